#pragma once

#include <QString>

#include <memory>

struct VoskModel;
struct VoskRecognizer;

namespace nivora::linuxdesktop {

// The functions of libvosk that are used here. Distributions do not have the
// library, so it is looked for while the program runs. It stays loaded: its own
// threads may outlive what it was loaded for.
struct VoskLibrary
{
    VoskModel *(*modelNew)(const char *folder);
    void (*modelFree)(VoskModel *model);
    VoskRecognizer *(*recognizerNew)(VoskModel *model, float sampleRate);
    void (*recognizerFree)(VoskRecognizer *recognizer);
    // 1 at a pause, 0 within speech, negative on failure.
    int (*accept)(VoskRecognizer *recognizer, const char *data, int bytes);
    // JSON, valid until the next call: {"text": ""} and {"partial": ""}.
    const char *(*result)(VoskRecognizer *recognizer);
    const char *(*partialResult)(VoskRecognizer *recognizer);
    const char *(*finalResult)(VoskRecognizer *recognizer);
    void (*setLogLevel)(int level);

    // `path` is a file, or a name that the system's loader knows. Null when it is
    // not there, which is nothing to tell of, or lacks a function, which is logged.
    static std::shared_ptr<const VoskLibrary> load(const QString &path);
};

} // namespace nivora::linuxdesktop
