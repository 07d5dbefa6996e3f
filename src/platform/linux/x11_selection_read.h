#pragma once

#include "platform/clipboard.h"
#include "x11_transfer.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <deque>

namespace nivora::linuxdesktop {

// One reading of a selection: conversions one after the other (there are owners
// that confuse two at a time) under one deadline for all of them. Destroying it
// abandons the reading.
class X11SelectionRead : public QObject
{
public:
    ~X11SelectionRead() override = default;

    xcb_atom_t selection() const { return m_selection; }

    // Ends the reading without a result.
    virtual void fail() = 0;

protected:
    X11SelectionRead(X11Connection &connection, X11Requestors &requestors, xcb_atom_t selection,
                     QDeadlineTimer deadline);

    X11Connection &connection() const { return m_connection; }
    void convert(xcb_atom_t target, std::function<void(std::optional<X11Transfer::Data>)> done);
    // Nothing is delivered any more after this.
    void stop();

private:
    X11Connection &m_connection;
    X11Requestors &m_requestors;
    xcb_atom_t m_selection;
    xcb_timestamp_t m_time;
    QTimer m_deadline;
    std::unique_ptr<X11Transfer> m_transfer;
};

// Reads everything that the owner offers. Targets that do something other than
// hand out data, or that hand out mere names of things which end with the owner,
// are left out, and so are those that the owner then refuses.
class X11ContentsRead final : public X11SelectionRead
{
public:
    using Done =
        std::function<void(const X11SelectionRead *, std::optional<platform::ClipboardContents>)>;

    // `done` is called once, never from within the constructor, and may destroy
    // the reading.
    X11ContentsRead(X11Connection &connection, X11Requestors &requestors, xcb_atom_t selection,
                    QDeadlineTimer deadline, Done done);

    void fail() override;

private:
    void targetsArrived(const std::optional<X11Transfer::Data> &targets);
    void convertNext();
    void finish();

    Done m_done;
    std::deque<std::pair<xcb_atom_t, QByteArray>> m_targets; // still to come
    std::vector<xcb_atom_t> m_types;                         // of the items
    platform::ClipboardContents m_contents;
};

// Reads the text that the owner offers, in the first form that it has.
class X11TextRead final : public X11SelectionRead
{
public:
    using Done = std::function<void(const X11SelectionRead *, std::optional<QString>)>;

    // `done` is called once, never from within the constructor, and may destroy
    // the reading.
    X11TextRead(X11Connection &connection, X11Requestors &requestors, xcb_atom_t selection,
                QDeadlineTimer deadline, Done done);

    void fail() override;

private:
    void convertNext();

    Done m_done;
    std::deque<xcb_atom_t> m_targets; // still to be tried
};

} // namespace nivora::linuxdesktop
