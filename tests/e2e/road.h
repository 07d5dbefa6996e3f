#pragma once

#include "support/accessibility_tree.h"
#include "support/clipboard_peer.h"
#include "support/desktop_session.h"
#include "support/editor.h"
#include "support/product.h"
#include "support/wait.h"
#include "support/x11_driver.h"

#include "localcloud/server.h"

#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace nivora::test {

// How the user calls the product.
enum class Trigger {
    DoubleShift,
    Chord, // Control+Alt+O
};

// Everything that one end-to-end test needs: a desktop, a translation service
// with scripted answers, the product set up to use it, an editor and a user.
class Road
{
public:
    explicit Road(const DesktopSession::Options &options = {});
    // Tells what a test that has failed saw last.
    ~Road();

    // Starts the service, on this port or any free one, and the desktop.
    bool prepare(quint16 port = 0);
    // Starts all that and the product. `preferences` are added to those that
    // lead it to the service.
    bool begin(const QJsonObject &preferences = {});
    // Opens the editor with this text, selected or not.
    bool open(Editor::Toolkit toolkit, const QString &text, bool selected = true);
    // Selects this text in an editor and pulls the trigger; true once the panel shows
    // the translation, with which the service answers the next request.
    bool translate(const QString &text, const QString &translation,
                   Editor::Toolkit toolkit = Editor::Toolkit::Gtk,
                   Trigger trigger = Trigger::DoubleShift);
    // What went wrong with the last of these, and what the product logged.
    QString problem() const;

    void pull(Trigger trigger);
    // Has the product do over D-Bus what its menu can.
    bool ask(const QString &action) const;
    // Small Latin letters, digits and the signs that need no other key with them.
    void type(QByteArrayView text);
    // Until the product's window of this role has the keyboard, or has gone.
    bool waitForWindow(const QString &role) const;
    bool waitForGone(const QString &role) const;
    // Presses the control, once it is there, as an assistive tool does.
    bool press(const QString &name) const;

    // Chooses the n-th entry of the open menu that can be chosen; with more than one
    // number, of the submenu that belongs to it.
    bool choose(const std::vector<int> &entries);

    // What this command of secret-tool prints about the product's secret of this account.
    QByteArray secretTool(const QString &command, const QString &account,
                          const QByteArray &input = {}) const;

    // The prompt of the n-th request: the last message that it carries.
    QString prompt(qsizetype request) const;
    bool waitForRequests(qsizetype count) const;

    DesktopSession session;
    localcloud::Server server;
    std::optional<X11Driver> user;
    std::optional<AccessibilityTree> tree;
    std::optional<ClipboardPeer> clipboard;
    std::optional<Product> product;
    std::optional<Editor> editor;

private:
    bool fail(const QString &what);

    DesktopSession::Options m_options;
    QString m_problem;
};

// What a wait for something that surely comes may take.
inline constexpr std::chrono::seconds patience{10};

} // namespace nivora::test
