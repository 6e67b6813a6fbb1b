#pragma once

#include <QObject>
#include <QString>

class QLocalServer;
class QWidget;

namespace qx9 {

// One window per database file for a user: a second start on the same file asks the first to come
// to the front and ends. The first listens on a local socket named after the file, in the user's
// runtime directory.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(const QString& databaseFile, QObject* parent = nullptr);

    // True when another window on the file took the request (this start then ends).
    bool askRunningWindow();
    // From now on a second start brings `window` to the front.
    void serve(QWidget* window);

private:
    QString name_;
    QLocalServer* server_ = nullptr;
};

}  // namespace qx9
