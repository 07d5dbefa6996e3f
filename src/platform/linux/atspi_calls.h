#pragma once

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDeadlineTimer>
#include <QString>
#include <QVariant>

#include <optional>
#include <utility>
#include <vector>

namespace nivora::linuxdesktop {

// Where an accessible object lives: the bus name of its program and its path.
struct AtspiObject
{
    QString service;
    QString path;

    bool operator==(const AtspiObject &) const = default;
};

namespace atspi {

inline constexpr auto accessible = QLatin1StringView("org.a11y.atspi.Accessible");
inline constexpr auto application = QLatin1StringView("org.a11y.atspi.Application");
inline constexpr auto collection = QLatin1StringView("org.a11y.atspi.Collection");
inline constexpr auto component = QLatin1StringView("org.a11y.atspi.Component");
inline constexpr auto editableText = QLatin1StringView("org.a11y.atspi.EditableText");
inline constexpr auto hyperlink = QLatin1StringView("org.a11y.atspi.Hyperlink");
inline constexpr auto hypertext = QLatin1StringView("org.a11y.atspi.Hypertext");
inline constexpr auto text = QLatin1StringView("org.a11y.atspi.Text");
// Names of toolkits
inline constexpr auto chromium = QLatin1StringView("Chromium");
inline constexpr auto gecko = QLatin1StringView("Gecko");
inline constexpr auto rootPath = QLatin1StringView("/org/a11y/atspi/accessible/root");

} // namespace atspi

// A run of calls under one deadline. Questions that do not depend on each other
// are sent together and answered in one round trip. The first call that gets no
// answer in time ends the run: a program that has stopped would let every other
// call run into the same wall.
//
// For a thread that may block, never the main thread.
class AtspiCalls
{
public:
    AtspiCalls(QDBusConnection bus, QDeadlineTimer deadline)
        : m_bus(std::move(bus))
        , m_deadline(deadline)
    {
    }

    QDBusPendingCall send(const AtspiObject &object, QLatin1StringView interface,
                          QLatin1StringView method, const QVariantList &arguments = {});
    QDBusPendingCall sendGet(const AtspiObject &object, QLatin1StringView interface,
                             QLatin1StringView property);
    // What process has this bus name; asked of the bus itself.
    QDBusPendingCall sendProcessOf(const QString &service);

    // Waits for the answer's arguments; empty when there is none.
    QVariantList arguments(QDBusPendingCall call);
    // The same for answers with one argument of a known kind, which is null,
    // empty or 0 for any other answer.
    QVariant property(QDBusPendingCall call);
    std::vector<AtspiObject> objects(QDBusPendingCall call);
    std::optional<AtspiObject> object(QDBusPendingCall call);
    QStringList strings(QDBusPendingCall call);
    // The 64 bits of a set of states.
    quint64 states(QDBusPendingCall call);
    qint64 processId(QDBusPendingCall call);

    // No more answers will come: a call was not answered in time.
    bool isOver() const { return m_over || m_deadline.hasExpired(); }

private:
    QDBusPendingCall send(QDBusMessage message);

    QDBusConnection m_bus;
    QDeadlineTimer m_deadline;
    bool m_over = false;
};

} // namespace nivora::linuxdesktop
