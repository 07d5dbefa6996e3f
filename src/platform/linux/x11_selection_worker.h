#pragma once

#include "x11_hand_over.h"
#include "x11_selection_owner.h"
#include "x11_selection_read.h"

#include <QPromise>

#include <atomic>

namespace nivora::linuxdesktop {

// What the PRIMARY selection holds.
struct X11PrimaryText
{
    QString text;
    qint64 ownerProcessId = 0;              // 0 when the owner cannot be told
    std::optional<xcb_timestamp_t> changed; // absent if not since the start
};

// Everything that talks to other programs about selections. Lives in a thread of
// its own, with a connection of its own.
class X11SelectionWorker final
{
public:
    template<typename Result>
    using Promise = std::shared_ptr<QPromise<Result>>;

    // `changes` counts the changes of the clipboard that are not this program's.
    X11SelectionWorker(const QByteArray &displayName, std::atomic<quint64> &changes);
    ~X11SelectionWorker();

    bool isValid() const { return m_connection.isValid(); }

    // A promise is dropped when there is nothing to answer.
    void read(QDeadlineTimer deadline, Promise<std::optional<platform::ClipboardContents>> promise);
    void readText(QDeadlineTimer deadline, Promise<std::optional<QString>> promise);
    void readPrimary(QDeadlineTimer deadline, Promise<std::optional<X11PrimaryText>> promise);
    void offer(X11Offer offer);
    // Hands what this program has put on the clipboard to the clipboard manager,
    // where there is one; `done` follows, within about `deadline`.
    void handOver(std::chrono::milliseconds deadline, std::function<void()> done);

private:
    class Watch; // of the changes of owner

    xcb_window_t ownerOf(xcb_atom_t selection);
    void ownerLost(xcb_atom_t selection);
    template<typename Read, typename Done>
    void start(xcb_atom_t selection, QDeadlineTimer deadline, Done done);
    void forget(const X11SelectionRead *read);

    X11Connection m_connection;
    X11Requestors m_requestors;
    X11SelectionOwner m_owner;
    std::unique_ptr<Watch> m_watch;
    std::vector<std::unique_ptr<X11SelectionRead>> m_reads;
    std::unique_ptr<X11HandOver> m_handOver;
};

} // namespace nivora::linuxdesktop
