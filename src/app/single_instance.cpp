#include "app/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QWidget>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace qx9 {

namespace {

constexpr char kRaise[] = "raise\n";
constexpr int kBacklog = 4;

// The socket's address; false when the path does not fit.
bool addressOf(const QByteArray& path, sockaddr_un& address) {
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path)) return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return true;
}

}  // namespace

SingleInstance::SingleInstance(const QString& databaseFile, QObject* parent) : QObject(parent) {
    const QByteArray file = QFileInfo(databaseFile).absoluteFilePath().toUtf8();
    QString dir = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (dir.isEmpty()) dir = QDir::tempPath();
    const QString name = "/halvorn-qx9-" + QCryptographicHash::hash(file, QCryptographicHash::Sha256).toHex().left(16);
    path_ = QFile::encodeName(dir + name);
}

SingleInstance::~SingleInstance() {
    if (listener_) ::unlink(path_.constData());
}

bool SingleInstance::askRunningWindow() const {
    sockaddr_un address;
    if (!addressOf(path_, address)) return false;
    // Non-blocking: a window that does not take the request within the backlog is not waited for.
    UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket) return false;
    if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return false;
    const ssize_t sent = ::send(socket.get(), kRaise, sizeof kRaise - 1, MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(sizeof kRaise - 1);
}

bool SingleInstance::serve(QWidget* window) {
    sockaddr_un address;
    if (!addressOf(path_, address)) return false;
    UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket) return false;
    // Nobody answered: a socket left by a window that ended without removing it is stale.
    ::unlink(path_.constData());
    const mode_t previous = ::umask(S_IRWXG | S_IRWXO);  // only this user may ask
    const bool bound = ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::umask(previous);
    if (!bound || ::listen(socket.get(), kBacklog) != 0) return false;
    listener_ = std::move(socket);
    notifier_ = new QSocketNotifier(listener_.get(), QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this, window] {
        // Any connection is a request; what it says is not needed.
        while (true) {
            UniqueFd peer(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
            if (!peer) break;
            if (window) {
                window->showNormal();
                window->raise();
                window->activateWindow();
            }
            emit asked();
        }
    });
    return true;
}

}  // namespace qx9
