#include "session/session_core.h"

#include <utility>

#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "i18n/text_ids.h"

namespace qx9 {

std::string storeProblemText(StoreProblem problem, const std::filesystem::path& file) {
    ExtraText id = ExtraText::kUnreadableMessage;
    switch (problem) {
        case StoreProblem::kInUse: id = ExtraText::kFileInUse; break;
        case StoreProblem::kNotWritable: id = ExtraText::kFileNotWritable; break;
        case StoreProblem::kDiskFull: id = ExtraText::kDiskFull; break;
        case StoreProblem::kDamaged:
        case StoreProblem::kNotOurs: break;
        case StoreProblem::kNone:
        case StoreProblem::kOther: return extraText(ExtraText::kNotStoredMessage);
    }
    std::string message = extraText(id);
    message.replace(message.find("%1"), 2, file.string());
    return message;
}

void SessionCore::notify(SessionAspect aspect) {
    if (!events) return;
    changedAspects.set(static_cast<std::size_t>(aspect));
    if (deliveryPosted) return;
    deliveryPosted = true;
    post([this] {
        deliveryPosted = false;
        const std::bitset<kSessionAspectCount> changed = std::exchange(changedAspects, {});
        for (int a = 0; a < kSessionAspectCount; ++a) {
            if (changed.test(static_cast<std::size_t>(a)) && events) events->changed(static_cast<SessionAspect>(a));
        }
    });
}

bool SessionCore::report(const ops::Outcome& outcome) {
    switch (outcome.status) {
        case ops::Outcome::kDone: return true;
        case ops::Outcome::kNotSent:
            if (events) events->notice(extraText(ExtraText::kNotSent));
            return true;
        case ops::Outcome::kTooLarge: return true;  // the page shows the memory the change needs
        case ops::Outcome::kNotStored:
        case ops::Outcome::kNotRead: warnNotStored(); return false;
        case ops::Outcome::kChanged:
            if (reload) reload();
            if (events) events->notice(extraText(ExtraText::kChangedElsewhere));
            return false;
        case ops::Outcome::kRefused: refused(outcome); return false;
    }
    return false;
}

void SessionCore::refused(const ops::Outcome& outcome) {
    using ops::Reason;
    switch (outcome.reason) {
        case Reason::kLastProfile: return warn(localizedText(textid::kDeleteProfile), localizedText(textid::kLastProfile));
        case Reason::kTooManyMacros: return warn(extraText(ExtraText::kMacroLimitTitle), extraText(ExtraText::kMacroLimitMessage));
        case Reason::kNoUserLight:
            if (outcome.args == std::vector<std::string>{"0"}) {
                return warn(localizedText(textid::kPleaseAddUserLights), localizedText(textid::kUserLight));
            }
            [[fallthrough]];
        case Reason::kNoProfile:
        case Reason::kNoMacro:
        case Reason::kNoEvent:
            // What the page showed is gone: another program removed it.
            report(ops::Outcome::changedMeanwhile({}));
            return;
        default: break;
    }
    // What the change depends on could not be read: the file is in trouble.
    if (deviceDB && namesACause(deviceDB->problem())) return warnNotStored();
    warn(extraText(ExtraText::kNotStoredTitle), extraText(ExtraText::kNotDoneMessage));
}

void SessionCore::warnNotStored() {
    warn(extraText(ExtraText::kNotStoredTitle), deviceDB ? storeProblemText(deviceDB->problem(), deviceDB->filePath())
                                                          : extraText(ExtraText::kNotStoredMessage));
}

void SessionCore::useKeyboard(const HidDeviceRef& device) {
    if (sender) {
        sender->setDevice(device);
        setKeyboardPresent(true);
        return;
    }
    if (!deviceDB) return;
    if (config.sendOnWorker) {
        // What the sender's thread finds reaches the main thread through the front end's loop.
        QueuedSender::Events senderEvents;
        senderEvents.finished = [this](const BlockRequest&, const SendResult& result) {
            if (result.status != SendResult::kNotSent) return;
            post([this] {
                if (events) events->notice(extraText(ExtraText::kNotSent));
            });
        };
        senderEvents.progress = [this](std::size_t done, std::size_t total, std::size_t waiting) {
            post([this, done, total, waiting] {
                if (events) events->sending(done, total, waiting);
            });
        };
        auto queued = std::make_unique<QueuedSender>(deviceDB->filePath(), config.pacer, config.wire, std::move(senderEvents));
        queued->setDevice(device);
        queuedSender = queued.get();
        sender = std::move(queued);
    } else {
        sender = std::make_unique<DirectSender>(device, *deviceDB, config.pacer, config.wire);
    }
    lightsOff = std::make_unique<LightsOffSender>(*sender);
}

void SessionCore::setKeyboardPresent(bool present) {
    if (sender) sender->setPresent(present);
}

bool SessionCore::finishSending(std::chrono::milliseconds timeout) {
    return !queuedSender || queuedSender->finish(timeout);
}

}  // namespace qx9
