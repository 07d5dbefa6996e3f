#pragma once

#include "core/translation_options.h"

#include <QString>

#include <vector>

namespace nivora {

// The glossary's file. Used by one thread at a time.
class GlossaryFile
{
public:
    explicit GlossaryFile(QString path)
        : m_path(std::move(path))
    {
    }

    // Empty, too, for a file that cannot be used.
    std::vector<GlossaryTerm> read();
    // Replaces the file in one step, or leaves it. One that could not be used is kept as
    // glossary.json.rejected.
    void write(const std::vector<GlossaryTerm> &terms);

private:
    QString m_path;
    bool m_rejected = false; // the file holds something that was not read
};

} // namespace nivora
