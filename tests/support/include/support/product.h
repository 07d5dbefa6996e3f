#pragma once

#include "support/accessibility_tree.h"
#include "support/x11_driver.h"

#include <QJsonObject>
#include <QMap>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

class QProcess;

namespace nivora::test {

class DesktopSession;
class Watchdog;

// The product itself, running in a session: started as a user's desktop starts
// it and looked at through what it shows to scripts and assistive tools alone.
class Product
{
public:
    Product(DesktopSession &session, X11Driver &user, const AccessibilityTree &tree);
    ~Product();
    Product(const Product &) = delete;
    Product &operator=(const Product &) = delete;

    // The program beside the one that is running.
    static QString program();

    // Writes the preferences, if any, and starts the program. True once it owns its
    // name on the session bus. `variables` are added to its environment. Its interface
    // is in Chinese unless one of them, or a preference, says otherwise.
    bool start(const QJsonObject &preferences, const QMap<QString, QString> &variables = {});
    bool isRunning() const;
    qint64 processId() const;
    // What it wrote to standard error, and the file that holds it.
    QString log() const;
    QString logFile() const;

    // Has its main thread watched from the next start on, until it is ended: a test
    // fails by what stands still for longer than is allowed, in milliseconds.
    void watch() { m_isWatched = true; }
    void allowStalls(double longest) { m_longestAllowedStall = longest; }
    // For how long it stood still at most, since the start or the last call.
    double takeLongestStall();

    static X11Driver::Condition panel();
    // Until the panel is there and has the keyboard.
    std::optional<X11Driver::Window> waitForPanel(std::chrono::milliseconds bound) const;
    bool waitForPanelGone(std::chrono::milliseconds bound) const;
    // A control of any of its windows, by its accessible name.
    std::optional<AccessibleElement> control(const QString &name) const;
    std::optional<AccessibleElement> waitForControl(const QString &name,
                                                    std::chrono::milliseconds bound) const;
    // A control whose name begins like this.
    std::optional<AccessibleElement> controlBeginning(const QString &start) const;
    // What the panel shows as translated; null without a panel.
    QString translation() const;
    bool waitForTranslation(const QString &text, std::chrono::milliseconds bound) const;
    // Everything that its windows show, for a failed test's message.
    QString dump() const;

private:
    void endWatch();

    DesktopSession &m_session;
    X11Driver &m_user;
    const AccessibilityTree &m_tree;
    QProcess *m_process = nullptr;
    std::unique_ptr<Watchdog> m_watchdog;
    bool m_isWatched = false;
    double m_longestAllowedStall = 100;
};

} // namespace nivora::test
