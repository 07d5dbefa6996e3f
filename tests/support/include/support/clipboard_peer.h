#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace nivora::test {

class DesktopSession;

// Another program of the session with something on the clipboard. It answers
// while this thread serves its events, as waitUntil() does.
class ClipboardPeer
{
public:
    struct Offer
    {
        QByteArray format; // "UTF8_STRING", "text/html"
        QByteArray data;   // up to 64 KiB
    };

    explicit ClipboardPeer(DesktopSession &session);
    ~ClipboardPeer();
    ClipboardPeer(const ClipboardPeer &) = delete;
    ClipboardPeer &operator=(const ClipboardPeer &) = delete;

    // Takes the clipboard. False when the server refuses.
    bool offer(std::vector<Offer> offers);
    bool offerText(const QString &text);
    bool owns() const;

    // Reading, by a program of its own, whoever owns the clipboard. Absent when
    // the clipboard is empty or does not hold this format.
    std::optional<QByteArray> read(const QByteArray &format) const;
    std::optional<QString> text() const;
    QByteArrayList formats() const;
    // What some program shows as selected.
    std::optional<QString> selection() const;

private:
    struct Owner;

    std::optional<QByteArray> read(const QString &selection, const QByteArray &format) const;

    DesktopSession &m_session;
    std::unique_ptr<Owner> m_owner;
};

} // namespace nivora::test
