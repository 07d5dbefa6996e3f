#pragma once

#include "platform/japanese_tokenizer.h"

#include <QThread>

#include <atomic>

namespace nivora::memory {

// Takes every text for the same one. Set it up before it is used; the rest may
// come from any thread.
class MemoryJapaneseTokenizer final : public platform::JapaneseTokenizer
{
public:
    bool prepare() override
    {
        ++m_prepared;
        return m_installed;
    }

    std::optional<std::vector<platform::JapaneseToken>>
    tokenize(const QString &text, const std::function<bool()> &goesOn) override
    {
        m_asked = text;
        ++m_calls;
        while (m_holds && goesOn())
            QThread::yieldCurrentThread();
        if (!m_installed || !goesOn())
            return std::nullopt;
        return m_tokens;
    }

    // Whether there is a dictionary.
    void setInstalled(bool installed) { m_installed = installed; }
    void setTokens(const std::vector<platform::JapaneseToken> &tokens) { m_tokens = tokens; }
    // Whether an answer takes until the caller gives up.
    void setHolds(bool holds) { m_holds = holds; }

    int prepared() const { return m_prepared; }
    int calls() const { return m_calls; }
    // The last text, to be looked at when no call is under way.
    QString asked() const { return m_asked; }

private:
    std::vector<platform::JapaneseToken> m_tokens;
    QString m_asked;
    std::atomic<bool> m_installed = true;
    std::atomic<bool> m_holds = false;
    std::atomic<int> m_prepared = 0;
    std::atomic<int> m_calls = 0;
};

} // namespace nivora::memory
