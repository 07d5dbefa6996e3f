#pragma once

#include "support/x11_peer.h"

namespace nivora::test {

// Another program's clipboard that offers what it does not hold.
class LyingOwner
{
public:
    enum class Lie {
        NeverDelivers,   // offers and says nothing more
        EndlessPieces,   // sends piece after piece
        WrongTypes,      // calls its text numbers, and numbers text
        WrongSizes,      // announces four gigabytes and sends three bytes
        UnreadableOffer, // lists no targets but a sentence
    };

    LyingOwner(const QByteArray &displayName, Lie lie)
        : m_peer(displayName)
        , m_lie(lie)
    {
        m_peer.onEvent = [this](const xcb_generic_event_t &event) {
            const int type = event.response_type & 0x7f;
            if (type == XCB_SELECTION_REQUEST)
                answer(reinterpret_cast<const xcb_selection_request_event_t &>(event));
            else if (type == XCB_PROPERTY_NOTIFY)
                continuePieces(reinterpret_cast<const xcb_property_notify_event_t &>(event));
        };
        m_window = m_peer.createWindow(0);
        m_peer.own(m_peer.atom("CLIPBOARD"), m_window);
    }

    bool owns() const { return m_peer.owns(m_peer.atom("CLIPBOARD"), m_window); }

private:
    void answer(const xcb_selection_request_event_t &request)
    {
        const auto text = m_peer.atom("UTF8_STRING");
        const auto html = m_peer.atom("text/html");
        if (request.target == m_peer.atom("TARGETS")) {
            if (m_lie == Lie::UnreadableOffer)
                m_peer.answer(request, XCB_ATOM_STRING, "no list");
            else
                m_peer.answer(request, {request.target, text, html, m_peer.atom("image/png")});
        } else if (m_lie == Lie::EndlessPieces || m_lie == Lie::WrongSizes) {
            beginPieces(request);
        } else if (m_lie == Lie::WrongTypes) {
            if (request.target == html)
                m_peer.answer(request, {1, 2, 0x7ffffff});
            else
                m_peer.answer(request, XCB_ATOM_INTEGER, "odd");
        } else if (m_lie == Lie::UnreadableOffer && request.target == text) {
            m_peer.answer(request, text, "from before");
        } else if (m_lie != Lie::NeverDelivers) {
            m_peer.notify(request, XCB_NONE);
        }
    }

    void beginPieces(const xcb_selection_request_event_t &request)
    {
        const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_peer.xcb(), request.requestor, XCB_CW_EVENT_MASK, &mask);
        const uint32_t size = UINT32_MAX;
        xcb_change_property(m_peer.xcb(), XCB_PROP_MODE_REPLACE, request.requestor,
                            request.property, m_peer.atom("INCR"), 32, 1, &size);
        m_peer.notify(request, request.property);
        m_piecesSent = 0;
    }

    void continuePieces(const xcb_property_notify_event_t &notify)
    {
        if (notify.state != XCB_PROPERTY_DELETE)
            return;
        const bool more = m_lie == Lie::EndlessPieces || m_piecesSent++ == 0;
        m_peer.setProperty(notify.window, notify.atom, m_peer.atom("UTF8_STRING"),
                           more ? "abc" : "");
        xcb_flush(m_peer.xcb());
    }

    X11Peer m_peer;
    Lie m_lie;
    xcb_window_t m_window;
    int m_piecesSent = 0;
};

} // namespace nivora::test
