#pragma once

#include "platform/clipboard.h"

namespace nivora::memory {

// A clipboard that this program shares with other programs, which the test
// plays.
class MemoryClipboard final : public platform::Clipboard
{
public:
    enum class Owner {
        Prompt,
        Silent, // holds the clipboard and never hands anything over
    };

    quint64 changeCount() const override { return m_changeCount; }
    platform::Task
    read(std::chrono::milliseconds deadline,
         std::function<void(std::optional<platform::ClipboardContents>)> done) override;
    platform::Task readText(std::chrono::milliseconds deadline,
                            std::function<void(std::optional<QString>)> done) override;
    void setText(const QString &text, Privacy privacy = Privacy::Ordinary) override;
    void setContents(const platform::ClipboardContents &contents) override;
    int fetchCount(qint64 processId) const override;

    // Another program puts something on the clipboard.
    void putForeignText(const QString &text);
    void putForeignContents(const platform::ClipboardContents &contents,
                            Owner owner = Owner::Prompt);

    // Another program pastes: the text, counted as one fetch if it is ours.
    std::optional<QString> paste(qint64 processId = 0);

    // What is there now, without any counting.
    const platform::ClipboardContents &contents() const { return m_contents; }
    std::optional<QString> text() const;
    bool isOurs() const { return m_ours; }
    bool isConcealed() const;

private:
    void replace(platform::ClipboardContents contents, bool ours, Owner owner);

    platform::ClipboardContents m_contents;
    bool m_ours = false;
    Owner m_owner = Owner::Prompt;
    quint64 m_changeCount = 0;
    std::vector<qint64> m_fetchers; // their processes, 0 for one that cannot be told
};

} // namespace nivora::memory
