#include "core/reading_service.h"

#include "core/japanese_kana.h"

#include <QPromise>

#include <algorithm>
#include <memory>

namespace nivora {

namespace {

// は, へ and を as particles are spelt one way and said another. Romaji follows
// the sound there, and the spelling everywhere else.
QString saidSpelling(const platform::JapaneseToken &token)
{
    QString reading = token.reading;
    if (reading.size() != token.pronunciation.size())
        return reading;
    for (qsizetype i = 0; i < reading.size(); ++i) {
        const QChar said = token.pronunciation[i];
        if ((reading[i] == u'ハ' && said == u'ワ') || (reading[i] == u'ヘ' && said == u'エ'))
            reading[i] = said;
    }
    return reading;
}

QString readingOf(const platform::JapaneseToken &token, ReadingForm form)
{
    if (token.reading.isEmpty())
        return token.surface;
    return form == ReadingForm::Hiragana ? hiraganaFromKatakana(token.reading)
                                         : romajiFromKana(saidSpelling(token));
}

bool isOpening(QChar c)
{
    return c.category() == QChar::Punctuation_Open ||
           c.category() == QChar::Punctuation_InitialQuote;
}

// A mark, or several, that belongs to the word before it. A name like .NET is none,
// and of a straight quotation mark nobody knows.
bool isClosingMark(QStringView token)
{
    const auto isMark = [](QChar c) { return c.isPunct() || c == u'～' || c == u'〜'; };
    return std::ranges::all_of(token, isMark) && !isOpening(token.front()) &&
           !QStringView(u"\"'").contains(token.front());
}

// Whether no blank has to be set between what is written and what follows.
bool standsClose(QStringView line, QStringView token)
{
    // These have a blank of their own.
    constexpr QStringView wideMarks = u"、。，．！？";
    return line.isEmpty() || line.back().isSpace() || token.front().isSpace() ||
           isOpening(line.back()) || wideMarks.contains(line.back()) || isClosingMark(token);
}

} // namespace

ReadingService::ReadingService(platform::JapaneseTokenizer &tokenizer)
    : m_tokenizer(tokenizer)
{
    m_worker.setMaxThreadCount(1);
}

ReadingService::~ReadingService()
{
    m_ending = true;
    m_worker.clear();
    m_worker.waitForDone();
}

void ReadingService::prepare()
{
    m_worker.start([this] { m_tokenizer.prepare(); });
}

platform::Task ReadingService::read(const QString &text, ReadingForm form,
                                    std::function<void(QString)> done)
{
    // Shared, since the worker's function has to be copyable.
    const auto promise = std::make_shared<QPromise<QString>>();
    auto task = platform::whenFinished<QString>(promise->future(), std::move(done));
    m_worker.start([=, this] {
        promise->start();
        promise->addResult(
            transcribe(text, form, [&] { return !m_ending && !promise->isCanceled(); }));
        promise->finish();
    });
    return task;
}

QString ReadingService::read(const QString &text, ReadingForm form) const
{
    return transcribe(text, form, [] { return true; });
}

QString ReadingService::transcribe(const QString &text, ReadingForm form,
                                   const std::function<bool()> &goesOn) const
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {};
    const auto tokens = m_tokenizer.tokenize(trimmed, goesOn);
    if (!tokens)
        return {};
    QString line;
    for (const auto &token : *tokens) {
        const QString reading = readingOf(token, form);
        if (!standsClose(line, reading))
            line += u' ';
        line += reading;
    }
    return line;
}

} // namespace nivora
