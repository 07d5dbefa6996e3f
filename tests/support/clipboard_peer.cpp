#include "support/clipboard_peer.h"

#include "child_process.h"
#include "support/desktop_session.h"
#include "support/wait.h"
#include "xcb_handle.h"

#include <QSocketNotifier>

#include <algorithm>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

struct ClipboardPeer::Owner
{
    explicit Owner(const QByteArray &displayName)
        : connection(xcb_connect(displayName.constData(), nullptr))
        , notifier(xcb_get_file_descriptor(connection.get()), QSocketNotifier::Read)
    {
        const auto *screen = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
        window = xcb_generate_id(connection.get());
        xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1,
                          0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        clipboard = atom("CLIPBOARD");
        targets = atom("TARGETS");
        QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [this] { serve(); });
    }

    xcb_atom_t atom(const QByteArray &name) const
    {
        const auto reply = holdReply(xcb_intern_atom_reply(
            connection.get(),
            xcb_intern_atom(connection.get(), false, uint16_t(name.size()), name.constData()),
            nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    bool owns() const
    {
        const auto reply = holdReply(xcb_get_selection_owner_reply(
            connection.get(), xcb_get_selection_owner(connection.get(), clipboard), nullptr));
        return reply && reply->owner == window;
    }

    void serve()
    {
        while (const auto event = holdReply(xcb_poll_for_event(connection.get()))) {
            if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST)
                answer(*reinterpret_cast<const xcb_selection_request_event_t *>(event.get()));
        }
    }

    void answer(const xcb_selection_request_event_t &request)
    {
        xcb_selection_notify_event_t notice{};
        notice.response_type = XCB_SELECTION_NOTIFY;
        notice.time = request.time;
        notice.requestor = request.requestor;
        notice.selection = request.selection;
        notice.target = request.target;
        notice.property = XCB_ATOM_NONE;

        const auto offered = std::ranges::find(offers, request.target, &Item::type);
        if (request.target == targets) {
            std::vector<xcb_atom_t> all{targets};
            std::ranges::transform(offers, std::back_inserter(all), &Item::type);
            xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, request.requestor,
                                request.property, XCB_ATOM_ATOM, 32, uint32_t(all.size()),
                                all.data());
            notice.property = request.property;
        } else if (offered != offers.end()) {
            xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, request.requestor,
                                request.property, offered->type, 8, uint32_t(offered->data.size()),
                                offered->data.constData());
            notice.property = request.property;
        }
        xcb_send_event(connection.get(), false, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char *>(&notice));
        xcb_flush(connection.get());
    }

    struct Item
    {
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray data;
    };

    XcbConnection connection;
    QSocketNotifier notifier;
    xcb_window_t window = XCB_WINDOW_NONE;
    xcb_atom_t clipboard = XCB_ATOM_NONE;
    xcb_atom_t targets = XCB_ATOM_NONE;
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
        m_owner->offers.push_back({m_owner->atom(format), std::move(data)});
    xcb_set_selection_owner(m_owner->connection.get(), m_owner->window, m_owner->clipboard,
                            XCB_CURRENT_TIME);
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
    const bool owning = m_owner->owns();
    // The reply may have brought requests along that no longer wake the notifier.
    m_owner->serve();
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
