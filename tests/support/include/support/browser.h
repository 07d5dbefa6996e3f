#pragma once

#include "support/application.h"

#include <QJsonObject>
#include <QTcpServer>

class QProcess;
class QTcpSocket;

namespace nivora::test {

// A web browser with one page, which this object serves. The page tells what is
// selected and what its fields hold, so nothing has to be learnt from what the
// browser shows to assistive tools.
class Browser final : public Application
{
public:
    enum class Kind {
        Firefox,
        Chromium,           // as it comes: it shows nothing to assistive tools
        AccessibleChromium, // told to show everything
    };

    Browser(const Desk &desk, Kind kind);
    ~Browser() override;

    bool open() override;

    // A text area with this text.
    bool show(const QString &text) override;
    bool select() override { return selectAll(content()); }
    bool deselect() override;
    QString selectedText() const override;
    QString content() const override;
    QRect place() const override;
    QRect frame() const override;
    Paste paste() const override { return Paste::ReplacesSelection; }
    X11Driver::WindowId window() const override { return m_window; }

    // Any page. What has the attribute "data-focus" gets the keyboard; else the
    // page itself does.
    bool showHtml(const QString &html);
    // With Ctrl+A; false when the page does not say that this is what is selected.
    bool selectAll(const QString &expected);
    // With the mouse, from the left end of the element with this id to the right
    // end of the other; false when what the page calls selected does not end so.
    bool drag(const QString &fromId, const QString &toId, const QString &end);
    // Where the page has its selection, in pixels of the screen. Known once the
    // pointer was over the page; its edges lie between pixels.
    QRectF selectionOnPage() const;

    // Until it shows an element with this text to assistive tools, which it begins
    // to do when it is first asked for its elements.
    bool waitForAccessible(const QString &text, std::chrono::milliseconds bound) const;

private:
    void serve(QTcpSocket *client);
    QRectF onScreen(const QJsonValue &rectangle) const;
    std::optional<AccessibleElement> focused() const;

    Desk m_desk;
    Kind m_kind;
    QTcpServer m_server;
    QProcess *m_process = nullptr;
    X11Driver::WindowId m_window = 0;
    QJsonObject m_order;  // what the page shall show, numbered
    QJsonObject m_report; // what it last said of itself
};

} // namespace nivora::test
