#include "platform_memory/memory_clipboard.h"

#include <algorithm>

namespace nivora::memory {

using platform::ClipboardContents;

namespace {

// The same formats and the same mark for clipboard managers as on a desktop.
const auto concealedFormat = QByteArrayLiteral("x-kde-passwordManagerHint");

ClipboardContents::Item item(const QByteArray &format, const QByteArray &data)
{
    return {format, format, 8, data};
}

ClipboardContents textContents(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    return {{item(QByteArrayLiteral("text/plain;charset=utf-8"), utf8),
             item(QByteArrayLiteral("UTF8_STRING"), utf8)}};
}

} // namespace

platform::Task MemoryClipboard::read(std::chrono::milliseconds deadline,
                                     std::function<void(std::optional<ClipboardContents>)> done)
{
    if (m_owner == Owner::Silent)
        return platform::delay(deadline, [done = std::move(done)] { done(std::nullopt); });
    return platform::delay({}, [contents = m_contents, done = std::move(done)] { done(contents); });
}

platform::Task MemoryClipboard::readText(std::chrono::milliseconds deadline,
                                         std::function<void(std::optional<QString>)> done)
{
    if (m_owner == Owner::Silent)
        return platform::delay(deadline, [done = std::move(done)] { done(std::nullopt); });
    return platform::delay({}, [text = text(), done = std::move(done)] { done(text); });
}

void MemoryClipboard::setText(const QString &text, Privacy privacy)
{
    auto contents = textContents(text);
    if (privacy == Privacy::Concealed)
        contents.items.push_back(item(concealedFormat, QByteArrayLiteral("secret")));
    m_fetchers.clear();
    replace(std::move(contents), true, Owner::Prompt);
}

void MemoryClipboard::setContents(const ClipboardContents &contents)
{
    m_fetchers.clear();
    replace(contents, !contents.items.empty(), Owner::Prompt);
}

int MemoryClipboard::fetchCount(qint64 processId) const
{
    return int(std::ranges::count_if(m_fetchers, [&](qint64 fetcher) {
        return processId == 0 || fetcher == 0 || fetcher == processId;
    }));
}

void MemoryClipboard::putForeignText(const QString &text)
{
    replace(textContents(text), false, Owner::Prompt);
}

void MemoryClipboard::putForeignContents(const ClipboardContents &contents, Owner owner)
{
    replace(contents, false, owner);
}

std::optional<QString> MemoryClipboard::paste(qint64 processId)
{
    if (m_owner == Owner::Silent)
        return std::nullopt;
    auto pasted = text();
    if (m_ours && pasted)
        m_fetchers.push_back(processId);
    return pasted;
}

std::optional<QString> MemoryClipboard::text() const
{
    for (const auto &format :
         {QByteArrayLiteral("UTF8_STRING"), QByteArrayLiteral("text/plain;charset=utf-8")}) {
        const auto found =
            std::ranges::find(m_contents.items, format, &ClipboardContents::Item::format);
        if (found != m_contents.items.end())
            return QString::fromUtf8(found->data);
    }
    return std::nullopt;
}

bool MemoryClipboard::isConcealed() const
{
    return std::ranges::find(m_contents.items, concealedFormat, &ClipboardContents::Item::format) !=
           m_contents.items.end();
}

void MemoryClipboard::replace(ClipboardContents contents, bool ours, Owner owner)
{
    m_contents = std::move(contents);
    m_ours = ours;
    m_owner = owner;
    ++m_changeCount;
}

} // namespace nivora::memory
