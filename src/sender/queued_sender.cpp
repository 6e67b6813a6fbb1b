#include "sender/queued_sender.h"

namespace qx9 {

namespace {

// Requests that a dragged control makes many of in a row.
bool followsADrag(const BlockRequest& request) { return request.kind == BlockRequest::kLightMode; }

}  // namespace

QueuedSender::QueuedSender(std::filesystem::path databaseFile, Pacer* pacer, std::shared_ptr<WireSink> wire,
                           Events events)
    : databaseFile_(std::move(databaseFile)), pacer_(pacer), wire_(std::move(wire)), events_(std::move(events)) {
    thread_ = std::thread([this] { loop(); });
}

QueuedSender::~QueuedSender() {
    finish(kCloseTimeout);
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

SendResult QueuedSender::send(const std::vector<BlockRequest>& blocks) {
    const Clock::time_point now = Clock::now();
    {
        std::lock_guard lock(mutex_);
        for (const BlockRequest& request : blocks) {
            Entry entry{request, now, now, false};
            for (auto it = queue_.begin(); it != queue_.end(); ++it) {
                if (!it->request.sameBlock(request)) continue;
                entry.first = it->first;
                entry.merged = true;
                queue_.erase(it);
                break;
            }
            queue_.push_back(std::move(entry));
        }
    }
    wake_.notify_all();
    return {SendResult::kQueued, {}};
}

void QueuedSender::setDevice(HidDeviceRef device) {
    {
        std::lock_guard lock(mutex_);
        jobs_.push_back({[this, device = std::move(device)] {
            if (!device) return comm_.reset();
            if (comm_) comm_->setDevice(device);  // opens it
            else comm_ = std::make_unique<DeviceComm>(device, pacer_, wire_);
        }});
    }
    wake_.notify_all();
}

void QueuedSender::setPresent(bool present) { present_ = present; }

std::size_t QueuedSender::abandon() {
    std::lock_guard lock(mutex_);
    const std::size_t dropped = queue_.size();
    queue_.clear();
    return dropped;
}

std::size_t QueuedSender::waiting() {
    std::lock_guard lock(mutex_);
    return queue_.size();
}

bool QueuedSender::idle() {
    std::lock_guard lock(mutex_);
    return queue_.empty() && jobs_.empty() && !busy_;
}

bool QueuedSender::finish(std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex_);
    flushing_ = true;
    wake_.notify_all();
    const bool done = idle_.wait_for(lock, timeout, [this] { return queue_.empty() && jobs_.empty() && !busy_; });
    flushing_ = false;
    return done;
}

QueuedSender::Clock::time_point QueuedSender::sendAt(const Entry& entry) const {
    if (flushing_ || !followsADrag(entry.request)) return entry.first;
    // The first change of a drag goes at once; the ones after it wait for the drag to settle.
    const bool dragging = entry.merged || Clock::now() - lastLightSend_ < kBurst;
    if (!dragging) return entry.first;
    return std::min(entry.last + kSettle, entry.first + kMaxHold);
}

void QueuedSender::loop() {
    std::unique_lock lock(mutex_);
    bool worked = false;  // something was sent since the queue was last empty
    for (;;) {
        if (!jobs_.empty()) {
            Job job = std::move(jobs_.front());
            jobs_.pop_front();
            busy_ = true;
            lock.unlock();
            job.work();
            lock.lock();
            busy_ = false;
            continue;
        }
        if (!queue_.empty()) {
            const Clock::time_point at = sendAt(queue_.front());
            if (Clock::now() < at && !stopping_) {
                wake_.wait_until(lock, at);
                continue;
            }
            const BlockRequest request = queue_.front().request;
            queue_.pop_front();
            busy_ = true;
            lock.unlock();
            sendOne(request);
            lock.lock();
            busy_ = false;
            worked = true;
            if (followsADrag(request)) lastLightSend_ = Clock::now();
            continue;
        }
        if (worked) {
            // Everything is sent: the front end hides its progress.
            worked = false;
            lock.unlock();
            if (events_.progress) events_.progress(0, 0, 0);
            lock.lock();
            continue;
        }
        idle_.notify_all();
        if (stopping_) return;
        wake_.wait(lock);
    }
}

void QueuedSender::sendOne(const BlockRequest& request) {
    SendResult result;
    if (comm_) {
        comm_->setDeviceStatus(present_ ? 1 : 0);
        if (!db_) db_ = DeviceSQLite::openForReading(databaseFile_);
        std::size_t waiting = 0;
        {
            std::lock_guard lock(mutex_);
            waiting = queue_.size();
        }
        // Busy from here, also while another program's transaction holds the keyboard.
        if (events_.progress) events_.progress(0, 1, waiting);
        result = sendBlocks(*comm_, *db_, std::span(&request, 1), [&](std::size_t done, std::size_t total) {
            if (events_.progress) events_.progress(done, total, waiting);
        });
    }
    if (events_.finished) events_.finished(request, result);
}

}  // namespace qx9
