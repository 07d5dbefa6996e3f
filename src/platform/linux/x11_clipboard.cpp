#include "x11_clipboard.h"

namespace nivora::linuxdesktop {

using platform::ClipboardContents;

namespace {

ClipboardContents textContents(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    const QByteArray utf8String("UTF8_STRING");
    ClipboardContents contents;
    contents.items = {
        {utf8String, utf8String, 8, utf8},
        {"text/plain;charset=utf-8", "text/plain;charset=utf-8", 8, utf8},
        {"text/plain", "text/plain", 8, utf8},
        {"TEXT", utf8String, 8, utf8},
    };
    // STRING is Latin-1. A text that does not fit into it is not offered so at
    // all: nothing is better than question marks.
    const QByteArray latin1 = text.toLatin1();
    if (QString::fromLatin1(latin1) == text)
        contents.items.push_back({"STRING", "STRING", 8, latin1});
    return contents;
}

} // namespace

X11Clipboard::X11Clipboard(X11SelectionThread &thread)
    : m_thread(thread)
    , m_fetches(std::make_shared<X11FetchLog>())
{
}

quint64 X11Clipboard::changeCount() const
{
    return m_thread.clipboardChanges();
}

platform::Task X11Clipboard::read(std::chrono::milliseconds deadline,
                                  std::function<void(std::optional<ClipboardContents>)> done)
{
    return m_thread.ask(&X11SelectionWorker::read, deadline, std::move(done));
}

platform::Task X11Clipboard::readText(std::chrono::milliseconds deadline,
                                      std::function<void(std::optional<QString>)> done)
{
    return m_thread.ask(&X11SelectionWorker::readText, deadline, std::move(done));
}

void X11Clipboard::setText(const QString &text, Privacy privacy)
{
    ClipboardContents contents = textContents(text);
    if (privacy == Privacy::Concealed) {
        const QByteArray hint("x-kde-passwordManagerHint");
        contents.items.push_back({hint, hint, 8, "secret"});
    }
    setContents(contents);
}

void X11Clipboard::setContents(const ClipboardContents &contents)
{
    ++m_thread.clipboardChanges();
    m_fetches = std::make_shared<X11FetchLog>();
    m_thread.post([offer = X11Offer{contents, m_fetches}](X11SelectionWorker &worker) {
        worker.offer(offer);
    });
}

int X11Clipboard::fetchCount(qint64 processId) const
{
    return m_fetches->count(processId);
}

} // namespace nivora::linuxdesktop
