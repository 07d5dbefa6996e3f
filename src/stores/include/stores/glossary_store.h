#pragma once

#include "core/translation_options.h"

#include "platform/task.h"
#include "platform/write_queue.h"

#include <QObject>
#include <QSet>

#include <memory>
#include <vector>

namespace nivora {

class GlossaryFile;

// The user's fixed terms, kept in one JSON file that is read once. Each change
// replaces the file in one step, where there are very many terms a moment later, so
// that typing does not write megabytes at each key. A thread writes, for which nobody
// waits longer than 50 ms. Failures are silent and leave the list in memory as it is.
// Main thread only.
class GlossaryStore : public QObject
{
    Q_OBJECT

public:
    explicit GlossaryStore(QString path = defaultPath());
    ~GlossaryStore() override;

    // $XDG_DATA_HOME/app.nivora/glossary.json
    static QString defaultPath();

    // In the order in which they were added. Empty, too, if the file could not
    // be used; the first change then keeps it as glossary.json.rejected.
    const std::vector<GlossaryTerm> &terms() const { return m_terms; }

    // Appends a term with both forms empty, and gives its id.
    QUuid add();
    // Appends those whose pair of forms is not there yet, and gives their number.
    int append(const std::vector<GlossaryTerm> &terms);
    // Replaces both forms of every term with the id.
    void update(const GlossaryTerm &term);
    void remove(const QUuid &id);
    void remove(const QSet<QUuid> &ids);

Q_SIGNALS:
    // After each change, when all of it is done.
    void changed();
    // What it was, in places of terms(). A removal tells of each run of
    // neighbours, from the last run to the first.
    void appended(int count);
    void updated(int place);
    void removed(int first, int last);

private:
    void persist();
    void write();

    std::shared_ptr<GlossaryFile> m_file; // the queue's, once there is a change
    platform::WriteQueue m_queue;
    std::vector<GlossaryTerm> m_terms;
    platform::Task m_write; // is yet to come
};

} // namespace nivora
