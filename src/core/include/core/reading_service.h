#pragma once

#include "platform/japanese_tokenizer.h"
#include "platform/task.h"

#include <QString>
#include <QThreadPool>

#include <atomic>
#include <functional>

namespace nivora {

enum class ReadingForm { Romaji, Hiragana };

// Writes Japanese in romaji or hiragana, on this machine alone. Words and marks
// are set apart by one blank; what has no reading stays as it is.
class ReadingService
{
public:
    // Borrows the tokenizer.
    explicit ReadingService(platform::JapaneseTokenizer &tokenizer);
    // Gives up what is under way: waits for the sentence, or the dictionary, that
    // is being read.
    ~ReadingService();

    // Loads the dictionary in the background. Worth a call as soon as a reading
    // is likely, for instance while its translation is still under way.
    void prepare();

    // The reading of the text without the white space around it. Empty for
    // blanks, and where there is no dictionary. Works in the background.
    platform::Task read(const QString &text, ReadingForm form, std::function<void(QString)> done);

    // The same at once, on the calling thread: about a millisecond for 200
    // characters, once the dictionary is there.
    QString read(const QString &text, ReadingForm form) const;

private:
    QString transcribe(const QString &text, ReadingForm form,
                       const std::function<bool()> &goesOn) const;

    platform::JapaneseTokenizer &m_tokenizer;
    std::atomic<bool> m_ending = false;
    QThreadPool m_worker; // one thread, and none once it has been idle for a while
};

} // namespace nivora
