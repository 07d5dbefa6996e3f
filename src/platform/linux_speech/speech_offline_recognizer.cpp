#include "platform_linux_speech/speech_offline_recognizer.h"

#include "platform/log.h"

#include "pocketsphinx_decoder.h"
#include "speech_recognition_thread.h"
#include "speech_recognition_work.h"
#include "vosk_decoder.h"
#include "vosk_library.h"

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

OfflineSpeechRecognizer::Places OfflineSpeechRecognizer::defaultPlaces()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                           "/app.nivora/speech"_L1;
    const QString ownLibrary = folder + "/libvosk.so"_L1;
    return {u"/usr/share/pocketsphinx/model/en-us"_s, folder,
            QFileInfo::exists(ownLibrary) ? ownLibrary : u"libvosk.so"_s};
}

OfflineSpeechRecognizer::OfflineSpeechRecognizer(const Places &places)
    : m_places(places)
    , m_pool(std::make_unique<QThreadPool>())
{
    // One that is just being given up, and the next.
    m_pool->setMaxThreadCount(2);
}

OfflineSpeechRecognizer::~OfflineSpeechRecognizer()
{
    m_pool->clear();
    if (m_pool->waitForDone(2000))
        return;
    // A library that reads a model cannot be stopped, nor may its pool be ended.
    qCWarning(log::app, "The speech recogniser's thread does not end");
    m_pool.release();
}

std::unique_ptr<platform::SpeechRecognition>
OfflineSpeechRecognizer::recognize(const QString &locale, Handler handler)
{
    if (locale.section(u'-', 0, 0) == u"en" && hasPocketsphinxModel(m_places.pocketsphinx)) {
        return std::make_unique<ThreadedRecognition>(
            *m_pool,
            [folder = m_places.pocketsphinx] {
                return MadeDecoder{makePocketsphinxDecoder(folder)};
            },
            std::move(handler));
    }
    const QString model = m_places.voskModels + u'/' + locale;
    if (!QFileInfo(model).isDir())
        return nullptr;
    // Not here, since it has tens of megabytes.
    return std::make_unique<ThreadedRecognition>(
        *m_pool,
        [path = m_places.voskLibrary, model]() -> MadeDecoder {
            const auto library = VoskLibrary::load(path);
            if (!library)
                return {nullptr, platform::RecognitionResult::Failure::Unavailable};
            return {makeVoskDecoder(library, model)};
        },
        std::move(handler));
}

} // namespace nivora::linuxdesktop
