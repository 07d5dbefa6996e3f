#include "platform/characters.h"

#include <QTextBoundaryFinder>

namespace nivora::platform {

qsizetype characterCount(QStringView text)
{
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype count = 0;
    while (graphemes.toNextBoundary() != -1)
        ++count;
    return count;
}

} // namespace nivora::platform
