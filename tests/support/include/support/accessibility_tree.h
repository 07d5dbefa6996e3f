#pragma once

#include <QDBusConnection>
#include <QRect>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace nivora::test {

// One element that a program shows to assistive tools. Copies refer to the same
// element. Every call asks the program, at most two seconds; an element that is
// gone answers with nothing.
class AccessibleElement
{
public:
    AccessibleElement(const QDBusConnection &bus, const QString &service, const QString &path);

    QString name() const;
    QString description() const;
    QString role() const; // "push button", "text", "label"
    bool isShowing() const;
    bool isFocused() const;
    bool isChecked() const;
    QRect frame() const; // pixels, from the top-left of the screen
    std::vector<AccessibleElement> children() const;

    // The whole text of an element that holds some; null for any other.
    QString text() const;
    // The selected text; empty when nothing is selected.
    QString selectedText() const;
    // Start and end of it in characters; absent when nothing is selected.
    std::optional<std::pair<int, int>> selection() const;
    int cursor() const; // in characters, -1 when there is none
    // Where these are, in pixels from the top-left of the screen.
    QRect selectionBounds() const;
    QRect cursorBounds() const; // without a width
    QRect characterBounds(int character) const;

    // False when the element does not offer it.
    bool press() const;
    bool takeFocus() const;
    bool setText(const QString &text) const;
    bool setValue(double value) const; // of a slider

private:
    friend class AccessibilityTree;

    QVariantList call(const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const;
    QVariant property(const QString &interface, const QString &name) const;
    bool hasState(int state) const;

    QDBusConnection m_bus;
    QString m_service;
    QString m_path;
};

// What assistive tools see of the programs of one session.
class AccessibilityTree
{
public:
    using Condition = std::function<bool(const AccessibleElement &)>;

    explicit AccessibilityTree(const QString &busAddress);
    ~AccessibilityTree();
    AccessibilityTree(const AccessibilityTree &) = delete;
    AccessibilityTree &operator=(const AccessibilityTree &) = delete;

    bool isValid() const { return m_bus.isConnected(); }

    // The program of this process; absent until it has joined.
    std::optional<AccessibleElement> application(qint64 processId) const;

    // The first element of the program, in the order of its tree, that is
    // showing and meets the condition.
    std::optional<AccessibleElement> find(qint64 processId, const Condition &condition) const;
    std::optional<AccessibleElement> waitFor(qint64 processId, const Condition &condition,
                                             std::chrono::milliseconds bound) const;

    // The program's showing elements, one a line, indented: for a failed test's
    // message.
    QString dump(qint64 processId) const;

    static Condition hasRole(const QString &role);
    static Condition hasName(const QString &name);
    static Condition isFocused();

private:
    QString m_connectionName;
    QDBusConnection m_bus;
};

} // namespace nivora::test
