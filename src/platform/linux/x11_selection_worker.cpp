#include "x11_selection_worker.h"

#include <xcb/xfixes.h>

namespace nivora::linuxdesktop {

using platform::ClipboardContents;

namespace {

// As another program would read it.
std::optional<QString> plainText(const ClipboardContents &contents)
{
    for (const char *format : {"UTF8_STRING", "text/plain;charset=utf-8", "STRING"}) {
        for (const auto &item : contents.items) {
            if (item.format == format)
                return item.type == "STRING" ? QString::fromLatin1(item.data)
                                             : QString::fromUtf8(item.data);
        }
    }
    return std::nullopt;
}

} // namespace

// Follows who owns the clipboard and the PRIMARY selection.
class X11SelectionWorker::Watch final : private X11EventHandler
{
public:
    Watch(X11SelectionWorker &worker, std::atomic<quint64> &changes)
        : X11EventHandler(worker.m_connection)
        , m_worker(worker)
        , m_changes(changes)
    {
        if (!connection().hasExtension(xcb_xfixes_id))
            return;
        // Selection events belong to version 1, but the server wants to be asked.
        connection().reply<xcb_xfixes_query_version_reply>(
            xcb_xfixes_query_version(connection().xcb(), 5, 0));
        constexpr uint32_t mask = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
        for (const X11Atom selection : {X11Atom::Clipboard, X11Atom::Primary})
            xcb_xfixes_select_selection_input(connection().xcb(), connection().root(),
                                              connection().atom(selection), mask);
        connection().flush();
    }

    // When PRIMARY last changed, absent if it has not since the start.
    std::optional<xcb_timestamp_t> primaryChanged() const { return m_primaryChanged; }

private:
    void handleEvent(const xcb_generic_event_t &event) override
    {
        const auto *extension = xcb_get_extension_data(connection().xcb(), &xcb_xfixes_id);
        if (!extension || eventType(event) != extension->first_event + XCB_XFIXES_SELECTION_NOTIFY)
            return;
        const auto &notify = eventAs<xcb_xfixes_selection_notify_event_t>(event);
        // The owner's death answers whoever still waits for it.
        if (notify.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER)
            m_worker.ownerLost(notify.selection);
        if (notify.selection == connection().atom(X11Atom::Primary))
            m_primaryChanged = notify.timestamp;
        else if (!m_worker.m_owner.isOwnChange(notify.owner, event.full_sequence))
            ++m_changes;
    }

    X11SelectionWorker &m_worker;
    std::atomic<quint64> &m_changes;
    std::optional<xcb_timestamp_t> m_primaryChanged;
};

X11SelectionWorker::X11SelectionWorker(const QByteArray &displayName, std::atomic<quint64> &changes)
    : m_connection(displayName)
    , m_requestors(m_connection)
    , m_owner(m_connection, m_connection.atom(X11Atom::Clipboard))
    , m_watch(std::make_unique<Watch>(*this, changes))
{
}

X11SelectionWorker::~X11SelectionWorker() = default;

xcb_window_t X11SelectionWorker::ownerOf(xcb_atom_t selection)
{
    const auto owner = m_connection.reply<xcb_get_selection_owner_reply>(
        xcb_get_selection_owner(m_connection.xcb(), selection));
    return owner ? owner->owner : XCB_NONE;
}

template<typename Read, typename Done>
void X11SelectionWorker::start(xcb_atom_t selection, QDeadlineTimer deadline, Done done)
{
    m_reads.push_back(std::make_unique<Read>(
        m_connection, m_requestors, selection, deadline,
        [this, done = std::move(done)](const X11SelectionRead *read, auto result) {
            done(std::move(result));
            forget(read);
        }));
}

void X11SelectionWorker::forget(const X11SelectionRead *read)
{
    std::erase_if(m_reads, [read](const auto &each) { return each.get() == read; });
}

void X11SelectionWorker::ownerLost(xcb_atom_t selection)
{
    std::vector<X11SelectionRead *> orphans;
    for (const auto &read : m_reads) {
        if (read->selection() == selection)
            orphans.push_back(read.get());
    }
    for (X11SelectionRead *read : orphans)
        read->fail();
}

void X11SelectionWorker::read(QDeadlineTimer deadline,
                              Promise<std::optional<ClipboardContents>> promise)
{
    if (!m_connection.isValid())
        return;
    const xcb_atom_t clipboard = m_connection.atom(X11Atom::Clipboard);
    const xcb_window_t owner = ownerOf(clipboard);
    if (owner == XCB_NONE || (owner == m_owner.window() && m_owner.contents())) {
        promise->addResult(owner == XCB_NONE ? ClipboardContents{} : *m_owner.contents());
        promise->finish();
        return;
    }
    start<X11ContentsRead>(clipboard, deadline,
                           [promise](std::optional<ClipboardContents> contents) {
                               promise->addResult(std::move(contents));
                               promise->finish();
                           });
}

void X11SelectionWorker::readText(QDeadlineTimer deadline, Promise<std::optional<QString>> promise)
{
    if (!m_connection.isValid())
        return;
    const xcb_atom_t clipboard = m_connection.atom(X11Atom::Clipboard);
    const xcb_window_t owner = ownerOf(clipboard);
    if (owner == XCB_NONE)
        return;
    if (owner == m_owner.window() && m_owner.contents()) {
        promise->addResult(plainText(*m_owner.contents()));
        promise->finish();
        return;
    }
    start<X11TextRead>(clipboard, deadline, [promise](std::optional<QString> text) {
        promise->addResult(std::move(text));
        promise->finish();
    });
}

void X11SelectionWorker::readPrimary(QDeadlineTimer deadline,
                                     Promise<std::optional<X11PrimaryText>> promise)
{
    if (!m_connection.isValid())
        return;
    const xcb_atom_t primary = m_connection.atom(X11Atom::Primary);
    const xcb_window_t owner = ownerOf(primary);
    if (owner == XCB_NONE)
        return;
    const qint64 process = m_connection.processOf(owner);
    start<X11TextRead>(
        primary, deadline, [this, promise, owner, process](const std::optional<QString> &text) {
            std::optional<X11PrimaryText> selection;
            if (text && !text->isEmpty()) {
                // Another program may have selected something meanwhile; then
                // it cannot be told whose text this is.
                const bool same = ownerOf(m_connection.atom(X11Atom::Primary)) == owner;
                selection = X11PrimaryText{*text, same ? process : 0, m_watch->primaryChanged()};
            }
            promise->addResult(std::move(selection));
            promise->finish();
        });
}

void X11SelectionWorker::offer(X11Offer offer)
{
    if (m_connection.isValid())
        m_owner.offer(std::move(offer));
}

void X11SelectionWorker::handOver(std::chrono::milliseconds deadline, std::function<void()> done)
{
    const auto targets = m_owner.targetsToKeep();
    if (!m_connection.isValid() || targets.empty())
        return done();
    m_handOver = std::make_unique<X11HandOver>(m_connection, m_owner.window(), targets, deadline,
                                               std::move(done));
}

} // namespace nivora::linuxdesktop
