#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>

class QAction;
class QMenu;

namespace nivora {

enum class MenuCommand {
    OpenAccessibilitySettings,
    ShowPanel,
    CaptureOCR,
    ShowHistory,
    ShowSettings,
    CheckForUpdates,
    ShowVersionHistory,
    VisitWebsite,
    SignIn,
    SignOut,
    Quit,
};

// What the menu shows of the program's state.
struct MenuState
{
    bool accessibilityTrusted = true;
    QString email;          // empty: nobody is signed in
    QString billingSummary; // empty: not known

    bool operator==(const MenuState &) const = default;
};

// The content of the tray icon's menu: every way into the program that is no
// global trigger. It decides nothing but what to show.
class MenuContent : public QObject
{
    Q_OBJECT

public:
    // `appVersion`: as told to users; empty where it is not known.
    explicit MenuContent(const QString &appVersion);
    ~MenuContent() override;

    void setState(const MenuState &state);

    // A menu with this content, which follows each change of it. Outlived by this
    // object.
    std::unique_ptr<QMenu> makeMenu();

Q_SIGNALS:
    void chosen(nivora::MenuCommand command);

protected:
    bool eventFilter(QObject *menu, QEvent *event) override;

private:
    QAction *addText(QList<QAction *> &rows, const QString &text);
    QAction *addButton(QList<QAction *> &rows, const QString &label, MenuCommand command,
                       const QKeySequence &shortcut = {});
    QAction *addDivider(QList<QAction *> &rows);
    void render();

    MenuState m_state;
    QList<QAction *> m_rows; // in their order; owned by this object
    QList<QAction *> m_aboutRows;
    QAction *m_about = nullptr; // stands for the submenu
    QList<QAction *> m_warning;
    QAction *m_signIn = nullptr;
    QAction *m_email = nullptr;
    QAction *m_billing = nullptr;
    QAction *m_signOut = nullptr;
};

} // namespace nivora
