#pragma once

#include "platform/clipboard.h"
#include "x11_fetch_log.h"
#include "x11_incr_sender.h"

#include <deque>
#include <memory>
#include <vector>

namespace nivora::linuxdesktop {

// What one setText() or setContents() put on the clipboard.
struct X11Offer
{
    platform::ClipboardContents contents;
    std::shared_ptr<X11FetchLog> fetches; // of the data handed out
};

// Holds a selection and hands out what was offered to the programs that ask.
class X11SelectionOwner final : private X11EventHandler
{
public:
    X11SelectionOwner(X11Connection &connection, xcb_atom_t selection);

    // Takes the selection with this offer. One without items leaves it without
    // an owner, whoever held it.
    void offer(X11Offer offer);

    // What is offered now, null when another program holds the selection.
    const platform::ClipboardContents *contents() const;
    // The targets of the offer; none when another program holds the selection, or
    // when the offer asks clipboard managers to look away.
    std::vector<xcb_atom_t> targetsToKeep() const;
    xcb_window_t window() const { return m_window; }
    // Whether a change to this owner, with this event number, is our own doing.
    // To be asked for each change, in the order of arrival.
    bool isOwnChange(xcb_window_t owner, uint32_t sequence);

private:
    struct Form // of the offer, ready to be handed out
    {
        xcb_atom_t target = XCB_NONE;
        xcb_atom_t type = XCB_NONE;
        int unit = 8;
        QByteArray bytes;
        bool counts = true;
    };

    void handleEvent(const xcb_generic_event_t &event) override;
    void serve(const xcb_selection_request_event_t &request);
    bool convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool convertSeveral(xcb_window_t requestor, xcb_atom_t property);
    void convertInPieces(xcb_window_t requestor, xcb_atom_t property, const Form &form);
    void ended(const X11IncrSender *sender);
    void prepare();

    xcb_atom_t m_selection;
    xcb_window_t m_window;
    std::optional<X11Offer> m_offer;
    std::vector<Form> m_forms;
    xcb_timestamp_t m_since = XCB_CURRENT_TIME;
    // Numbers of our requests to change the owner: of the last one, and of those
    // whose outcome has not been announced yet.
    uint32_t m_lastSet = 0;
    std::deque<uint32_t> m_unannounced;
    std::vector<std::unique_ptr<X11IncrSender>> m_senders;
};

} // namespace nivora::linuxdesktop
