#pragma once

#include "support/accessibility_tree.h"
#include "support/clipboard_peer.h"
#include "support/desktop_session.h"
#include "support/editor.h"
#include "support/product.h"
#include "support/wait.h"
#include "support/x11_driver.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace nivora {

// The product's main job, done and checked on a desktop of its own: text
// selected in an editor, Shift tapped twice, the translation put in its place.
class Demo
{
public:
    struct Options
    {
        QUrl cloud;         // the origin that the product was built for
        QString screenshot; // where the picture of the open panel goes
    };

    explicit Demo(Options options)
        : m_options(std::move(options))
    {
    }

    // One line per step goes to standard output. True if all of it held.
    bool run();

private:
    bool prepare();
    bool translate();
    bool replace();

    // Prints the step with the time since the step before.
    bool step(bool held, const QString &what, const QString &whyNot = {});

    Options m_options;
    QString m_expected;
    test::Clock::time_point m_stepStart = test::Clock::now();

    test::DesktopSession m_session;
    std::optional<test::X11Driver> m_user;
    std::optional<test::AccessibilityTree> m_tree;
    std::optional<test::ClipboardPeer> m_clipboard;
    std::optional<test::Product> m_product;
    std::optional<test::Editor> m_editor;
};

} // namespace nivora
