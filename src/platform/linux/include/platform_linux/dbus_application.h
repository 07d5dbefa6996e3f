#pragma once

#include "platform/task.h"

#include <QObject>
#include <QStringList>
#include <QUrl>

#include <functional>

namespace nivora::linuxdesktop {

// The process on the session bus: the name app.nivora, and the object
// /app/nivora by which other programs of the session reach it.
class DBusApplication : public QObject
{
    Q_OBJECT

public:
    enum class Role {
        Primary,   // this process has the name, or there is no bus to have it on
        Secondary, // another process has it, and was activated or given the links
    };

    DBusApplication();
    ~DBusApplication() override;

    // Asks for the name. Answers within 2 seconds for each of its two calls. The
    // links that this process was started with are opened by whichever has the
    // name; here after `done`.
    platform::Task acquire(const QStringList &links, std::function<void(Role)> done);

    // Passes on the program's own among these links.
    void open(const QStringList &links);

Q_SIGNALS:
    // Another program, or a second start, asks for the program.
    void activated();
    // Another program asks for one of the program's actions; the name is its word
    // and may be any.
    void actionRequested(const QString &name);
    // A link of the program's own scheme, "nivora:". Any program of the session
    // may send one, so it proves nothing. Others are not passed on.
    void linkOpened(const QUrl &link);
};

} // namespace nivora::linuxdesktop
