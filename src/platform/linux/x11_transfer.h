#pragma once

#include "x11_requestors.h"

#include <functional>
#include <optional>

namespace nivora::linuxdesktop {

// One conversion of a selection to one target: asks the owner and receives the
// bytes, in one piece or in many (INCR). Has no deadline of its own: who holds it
// drops it when the time is up.
class X11Transfer final : private X11EventHandler
{
public:
    struct Data
    {
        xcb_atom_t type = XCB_NONE;
        int unit = 8; // bits per element
        QByteArray bytes;
    };

    // `done` is called once, never from within the constructor, with nothing
    // when the owner refuses. It may destroy the transfer.
    X11Transfer(X11Connection &connection, X11Requestors &requestors, xcb_atom_t selection,
                xcb_atom_t target, xcb_timestamp_t time,
                std::function<void(std::optional<Data>)> done);
    ~X11Transfer() override;

private:
    void handleEvent(const xcb_generic_event_t &event) override;
    void answered(const xcb_selection_notify_event_t &notify);
    void pieceArrived();
    X11Ptr<xcb_get_property_reply_t> takeProperty();
    void finish(std::optional<Data> data);

    X11Requestors &m_requestors;
    xcb_atom_t m_selection;
    xcb_atom_t m_target;
    xcb_window_t m_window;
    bool m_inPieces = false;
    bool m_finished = false;
    Data m_data;
    std::function<void(std::optional<Data>)> m_done;
};

} // namespace nivora::linuxdesktop
