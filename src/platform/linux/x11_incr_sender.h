#pragma once

#include "x11_connection.h"

#include <QTimer>

#include <functional>

namespace nivora::linuxdesktop {

// Hands data to another program's window in pieces: each time that it takes one
// the next is written, and an empty one ends the transfer (INCR). Keeps its own
// copy of the data, so that the selection may change meanwhile.
class X11IncrSender final : public QObject, private X11EventHandler
{
public:
    // The largest piece, in bytes: what other programs send at once too.
    static qsizetype pieceSize(X11Connection &connection);

    // Writes the announcement. `ended` is called once, never from within the
    // constructor: true when the other program has taken everything, false when
    // it stopped asking or its window went. It may destroy the sender.
    X11IncrSender(X11Connection &connection, xcb_window_t requestor, xcb_atom_t property,
                  xcb_atom_t type, int unit, QByteArray bytes,
                  std::function<void(const X11IncrSender *, bool complete)> ended);

    xcb_window_t requestor() const { return m_requestor; }

private:
    void handleEvent(const xcb_generic_event_t &event) override;
    void sendPiece();
    void end(bool complete);

    xcb_window_t m_requestor;
    xcb_atom_t m_property;
    xcb_atom_t m_type;
    int m_unit;
    QByteArray m_bytes;
    qsizetype m_sent = 0;
    bool m_closed = false; // the empty piece has been written
    QTimer m_patience;
    std::function<void(const X11IncrSender *, bool)> m_ended;
};

} // namespace nivora::linuxdesktop
