#pragma once

#include <QObject>
#include <QString>

#include "common/unique_fd.h"

class QSocketNotifier;
class QWidget;

namespace qx9 {

// One window per database file for a user: a second start on the same file asks the first to come
// to the front and ends. The first listens on a Unix socket named after the file, in the user's
// runtime directory.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(const QString& databaseFile, QObject* parent = nullptr);
    ~SingleInstance() override;

    // True when another window on the file took the request (this start then ends).
    bool askRunningWindow() const;
    // From now on a second start brings `window` to the front. False when the socket could not
    // be made (every start then opens its own window).
    bool serve(QWidget* window);
    // The socket's path.
    const QByteArray& path() const { return path_; }

signals:
    // A second start asked for the window.
    void asked();

private:
    QByteArray path_;
    UniqueFd listener_;
    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace qx9
