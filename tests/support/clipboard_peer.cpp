#include "support/clipboard_peer.h"

#include "child_process.h"
#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_peer.h"

#include <algorithm>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

struct ClipboardPeer::Owner
{
    explicit Owner(const QByteArray &displayName)
        : peer(displayName)
        , window(peer.createWindow(0))
    {
        peer.onEvent = [this](const xcb_generic_event_t &event) {
            if ((event.response_type & 0x7f) == XCB_SELECTION_REQUEST)
                answer(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        };
    }

    void answer(const xcb_selection_request_event_t &request) const
    {
        const auto offered = std::ranges::find(offers, request.target, &Item::type);
        if (request.target == targets) {
            std::vector<xcb_atom_t> all{targets};
            std::ranges::transform(offers, std::back_inserter(all), &Item::type);
            peer.answer(request, all);
        } else if (offered != offers.end()) {
            peer.answer(request, offered->type, offered->data);
        } else {
            peer.notify(request, XCB_ATOM_NONE);
        }
    }

    struct Item
    {
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray data;
    };

    X11Peer peer;
    xcb_window_t window;
    xcb_atom_t clipboard = peer.atom("CLIPBOARD");
    xcb_atom_t targets = peer.atom("TARGETS");
    std::vector<Item> offers;
};

ClipboardPeer::ClipboardPeer(DesktopSession &session)
    : m_session(session)
    , m_owner(std::make_unique<Owner>(session.displayName()))
{
}

ClipboardPeer::~ClipboardPeer() = default;

bool ClipboardPeer::offer(std::vector<Offer> offers)
{
    m_owner->offers.clear();
    for (auto &[format, data] : offers)
        m_owner->offers.push_back({m_owner->peer.atom(format), std::move(data)});
    m_owner->peer.own(m_owner->clipboard, m_owner->window);
    return owns();
}

bool ClipboardPeer::offerText(const QString &text)
{
    return offer({{"UTF8_STRING", text.toUtf8()},
                  {"text/plain;charset=utf-8", text.toUtf8()},
                  {"STRING", text.toLatin1()}});
}

bool ClipboardPeer::owns() const
{
    const bool owning = m_owner->peer.owns(m_owner->clipboard, m_owner->window);
    // The reply may have brought requests along that no longer wake the notifier.
    m_owner->peer.serve();
    return owning;
}

std::optional<QByteArray> ClipboardPeer::read(const QByteArray &format) const
{
    return read(u"clipboard"_s, format);
}

std::optional<QByteArray> ClipboardPeer::read(const QString &selection,
                                              const QByteArray &format) const
{
    const auto reader = makeChildProcess();
    reader->setProcessEnvironment(m_session.environment());
    reader->start(u"xclip"_s, {u"-selection"_s, selection, u"-out"_s, u"-target"_s,
                               QString::fromLatin1(format)});
    const bool ended = waitUntil([&] { return reader->state() == QProcess::NotRunning; }, 5s, 1ms);
    endProcess(*reader);
    if (!ended || reader->exitStatus() != QProcess::NormalExit || reader->exitCode() != 0)
        return {};
    return reader->readAllStandardOutput();
}

std::optional<QString> ClipboardPeer::text() const
{
    const auto bytes = read("UTF8_STRING");
    return bytes ? std::optional(QString::fromUtf8(*bytes)) : std::nullopt;
}

std::optional<QString> ClipboardPeer::selection() const
{
    const auto bytes = read(u"primary"_s, "UTF8_STRING");
    return bytes ? std::optional(QString::fromUtf8(*bytes)) : std::nullopt;
}

QByteArrayList ClipboardPeer::formats() const
{
    auto names = read("TARGETS").value_or(QByteArray()).split('\n');
    names.removeAll(QByteArray());
    return names;
}

} // namespace nivora::test
