#pragma once

#include "localcloud/server.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <memory>
#include <random>

namespace nivora::bench {

// A translation service that fails at random, in every way that a service can,
// and keeps a book of what it was asked and how it answered.
class SoakService
{
public:
    struct Fate
    {
        int whole = 0;   // answers that a client may read to their end
        int failing = 0; // and such that it cannot
        bool lastWasWhole = false;
    };

    explicit SoakService(quint32 seed)
        : m_random(seed)
    {
    }

    // The address stays the same. Closing ends every connection.
    bool open();
    void close() { m_server.reset(); }
    bool isOpen() const { return m_server != nullptr; }
    QString address() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_port); }

    // What the user has selected: no other text may be sent.
    void expect(const QString &source);
    QString translationOf(const QString &source) const;
    Fate fateOf(const QString &source) const { return m_fates.value(source); }
    const QHash<QString, Fate> &fates() const { return m_fates; }
    // Texts that were sent though nobody had selected them.
    QStringList takeStrangeTexts() { return std::exchange(m_strange, {}); }

private:
    struct Draw
    {
        localcloud::Answer answer;
        bool isWhole;
    };

    localcloud::Answer answerTo(const localcloud::Request &request);
    Draw draw(const QString &text);
    localcloud::Answer whole(const QStringList &pieces);
    int random(int below) { return int(m_random() % unsigned(below)); }

    std::mt19937 m_random;
    std::unique_ptr<localcloud::Server> m_server;
    quint16 m_port = 0;
    QHash<QString, Fate> m_fates;
    QSet<QString> m_translations;
    QStringList m_strange;
};

} // namespace nivora::bench
