#include "vosk_library.h"

#include "platform/log.h"

#include <QFile>

#include <dlfcn.h>

namespace nivora::linuxdesktop {

namespace {

template<typename Function>
bool resolve(void *library, const char *name, Function &function)
{
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (!function)
        qCWarning(log::app, "The Vosk library has no function %s: it is not used", name);
    return function;
}

} // namespace

std::shared_ptr<const VoskLibrary> VoskLibrary::load(const QString &path)
{
    void *const library =
        dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!library)
        return nullptr;
    auto functions = std::make_shared<VoskLibrary>();
    const bool whole =
        resolve(library, "vosk_model_new", functions->modelNew) &&
        resolve(library, "vosk_model_free", functions->modelFree) &&
        resolve(library, "vosk_recognizer_new", functions->recognizerNew) &&
        resolve(library, "vosk_recognizer_free", functions->recognizerFree) &&
        resolve(library, "vosk_recognizer_accept_waveform", functions->accept) &&
        resolve(library, "vosk_recognizer_result", functions->result) &&
        resolve(library, "vosk_recognizer_partial_result", functions->partialResult) &&
        resolve(library, "vosk_recognizer_final_result", functions->finalResult) &&
        resolve(library, "vosk_set_log_level", functions->setLogLevel);
    dlclose(library);
    return whole ? functions : nullptr;
}

} // namespace nivora::linuxdesktop
