#include "app/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QWidget>

namespace qx9 {

namespace {

constexpr int kAnswerMilliseconds = 500;  // how long a second start waits for the first window
const QByteArray kRaise = "raise\n";

}  // namespace

SingleInstance::SingleInstance(const QString& databaseFile, QObject* parent) : QObject(parent) {
    const QByteArray file = QFileInfo(databaseFile).absoluteFilePath().toUtf8();
    QString dir = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (dir.isEmpty()) dir = QDir::tempPath();
    name_ = dir + "/halvorn-qx9-" + QCryptographicHash::hash(file, QCryptographicHash::Sha256).toHex().left(16);
}

bool SingleInstance::askRunningWindow() {
    QLocalSocket socket;
    socket.connectToServer(name_);
    if (!socket.waitForConnected(kAnswerMilliseconds)) return false;
    socket.write(kRaise);
    return socket.waitForBytesWritten(kAnswerMilliseconds);
}

void SingleInstance::serve(QWidget* window) {
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    // Nobody answered: a socket left by a window that ended without closing it is stale.
    if (!server_->listen(name_)) {
        QLocalServer::removeServer(name_);
        if (!server_->listen(name_)) return;  // then every start opens its own window, as before
    }
    connect(server_, &QLocalServer::newConnection, this, [this, window] {
        while (QLocalSocket* s = server_->nextPendingConnection()) {
            connect(s, &QLocalSocket::disconnected, s, &QObject::deleteLater);
            window->showNormal();
            window->raise();
            window->activateWindow();
        }
    });
}

}  // namespace qx9
