#include "stores/glossary_store.h"

#include "glossary_file.h"

#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// So many are written in about a millisecond.
constexpr std::size_t manyTerms = 1000;
constexpr auto writePause = 300ms;

} // namespace

GlossaryStore::GlossaryStore(QString path)
    : m_file(std::make_shared<GlossaryFile>(std::move(path)))
    , m_terms(m_file->read())
{
}

GlossaryStore::~GlossaryStore()
{
    if (m_write.isRunning())
        write();
}

QString GlossaryStore::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           "/app.nivora/glossary.json"_L1;
}

QUuid GlossaryStore::add()
{
    const QUuid id = QUuid::createUuid();
    m_terms.push_back({id, {}, {}});
    Q_EMIT appended(1);
    persist();
    return id;
}

int GlossaryStore::append(const std::vector<GlossaryTerm> &terms)
{
    QSet<TermPair> known;
    for (const GlossaryTerm &term : m_terms)
        known.insert({term.zh, term.ja});
    const std::size_t before = m_terms.size();
    for (const GlossaryTerm &term : terms) {
        const auto pairs = known.size();
        known.insert({term.zh, term.ja});
        if (known.size() > pairs)
            m_terms.push_back(term);
    }
    const int count = int(m_terms.size() - before);
    if (count > 0) {
        Q_EMIT appended(count);
        persist();
    }
    return count;
}

void GlossaryStore::update(const GlossaryTerm &term)
{
    bool differs = false;
    for (std::size_t place = 0; place < m_terms.size(); ++place) {
        if (m_terms[place].id == term.id && m_terms[place] != term) {
            m_terms[place] = term;
            differs = true;
            Q_EMIT updated(int(place));
        }
    }
    if (differs)
        persist();
}

void GlossaryStore::remove(const QUuid &id)
{
    remove(QSet<QUuid>{id});
}

void GlossaryStore::remove(const QSet<QUuid> &ids)
{
    const auto isNamed = [&](const GlossaryTerm &term) { return ids.contains(term.id); };
    bool differs = false;
    auto end = m_terms.end();
    while (end != m_terms.begin()) {
        if (!isNamed(*(end - 1))) {
            --end;
            continue;
        }
        auto begin = end - 1;
        while (begin != m_terms.begin() && isNamed(*(begin - 1)))
            --begin;
        const int first = int(begin - m_terms.begin());
        const int last = int(end - m_terms.begin()) - 1;
        m_terms.erase(begin, end);
        end = m_terms.begin() + first;
        differs = true;
        Q_EMIT removed(first, last);
    }
    if (differs)
        persist();
}

void GlossaryStore::persist()
{
    Q_EMIT changed();
    if (m_terms.size() <= manyTerms)
        write();
    else if (!m_write.isRunning())
        m_write = platform::delay(writePause, [this] { write(); });
}

void GlossaryStore::write()
{
    m_write.cancel();
    m_queue.replace([file = m_file, terms = m_terms] { file->write(terms); });
}

} // namespace nivora
