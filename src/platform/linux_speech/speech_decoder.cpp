#include "speech_decoder.h"

namespace nivora::linuxdesktop {

QString joinedSpeech(const QString &before, const QString &more)
{
    if (before.isEmpty() || more.isEmpty())
        return before + more;
    return before + u' ' + more;
}

} // namespace nivora::linuxdesktop
