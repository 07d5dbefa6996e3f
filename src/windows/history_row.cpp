#include "history_row.h"

#include "windows/theme.h"

#include "core/language.h"

#include <QDeadlineTimer>
#include <QFontMetrics>
#include <QLocale>

#include <unicode/udat.h>

#include <algorithm>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int textPixels = 13;
constexpr int captionPixels = 11;
constexpr int sideMargin = 16;
constexpr int verticalMargin = 9;
constexpr int gap = 4;
constexpr int headerHeight = 18;
constexpr QSize buttonSize(22, 18);

// More than eight lines of a window as wide as a screen hold.
constexpr int mostCharacters = 2000;
constexpr int mostLines = 8;
// In pixels: less than the narrowest letter and than any character of full width take.
constexpr int narrowAdvance = 2;
constexpr int wideAdvance = 10;

constexpr qsizetype mostHeights = 20'000;

Language sourceOf(const HistoryEntry &entry)
{
    return languageFromRawValue(entry.from).value_or(Language::Auto);
}

Language targetOf(const HistoryEntry &entry)
{
    return languageFromRawValue(entry.to).value_or(Language::Chinese);
}

QString beginning(const QString &text, qsizetype most = mostCharacters)
{
    if (text.size() <= most)
        return text;
    const bool splits = most > 0 && text[most - 1].isHighSurrogate();
    return text.left(most - (splits ? 1 : 0)) + u'…';
}

// Kana, ideographs, syllables of Hangul: what is shown in full width by every font.
bool isWide(QChar character)
{
    const char16_t code = character.unicode();
    return (code >= 0x3041 && code < 0xA000) || (code >= 0xAC00 && code < 0xD7A4);
}

// How much of a text has room in all lines of this width, and rather more than less:
// to lay out all of a long text takes its time.
qsizetype roomFor(const QString &text, int width)
{
    int lines = 0;
    int filled = 0;
    qsizetype end = 0;
    for (; end < text.size() && end < mostCharacters; ++end) {
        filled += isWide(text[end]) ? wideAdvance : narrowAdvance;
        if (text[end] == u'\n' || filled > width) {
            filled = 0;
            if (++lines > mostLines)
                break;
        }
    }
    return end;
}

void layOut(TextFlow &flow, const QString &text, Language language, int width)
{
    flow.setFont(textFont(textPixels, language));
    flow.setWidth(width);
    const auto set = [&](const QString &shown) {
        flow.clear();
        flow.append(shown);
        flow.layOut(QDeadlineTimer(QDeadlineTimer::Forever));
    };
    set(beginning(text, roomFor(text, width)));
    const QRectF line = flow.caretAt(0);
    const int most = qRound(line.top() + line.height() * mostLines);
    // The last line ends early enough for the mark, after a try or two.
    for (int end = flow.positionAt({qreal(width), most - line.height() / 2});
         flow.height() > most && end > 0; end = flow.previous(end))
        set(flow.text().left(flow.previous(end)).trimmed() + u'…');
}

// Formats for dates take a while to make.
UDateFormat *dateFormat()
{
    struct Close
    {
        void operator()(UDateFormat *format) const { udat_close(format); }
    };
    static const std::unique_ptr<UDateFormat, Close> format = [] {
        UErrorCode status = U_ZERO_ERROR;
        return std::unique_ptr<UDateFormat, Close>(
            udat_open(UDAT_SHORT, UDAT_MEDIUM, QLocale().name().toLatin1().constData(), nullptr, -1,
                      nullptr, -1, &status));
    }();
    return format.get();
}

} // namespace

QString directionOf(const HistoryEntry &entry)
{
    return displayName(sourceOf(entry)) + u" → "_s + displayName(targetOf(entry));
}

QString dateOf(const HistoryEntry &entry)
{
    UErrorCode status = U_ZERO_ERROR;
    char16_t text[128];
    const int length = dateFormat()
                           ? udat_format(dateFormat(), double(entry.date.toMSecsSinceEpoch()), text,
                                         std::size(text), nullptr, &status)
                           : 0;
    if (length <= 0 || length > int(std::size(text)) || U_FAILURE(status))
        return QLocale().toString(entry.date.toLocalTime(), QLocale::ShortFormat);
    return QString::fromUtf16(text, length);
}

QString spokenRow(const HistoryEntry &entry)
{
    return QStringList{directionOf(entry), dateOf(entry), beginning(entry.sourceText),
                       beginning(entry.translation)}
        .join(u'\n');
}

HistoryRow::HistoryRow(const HistoryEntry &entry, int width)
    : direction(directionOf(entry))
    , date(dateOf(entry))
    , m_width(width)
{
    const int textWidth = std::max(1, width - 2 * sideMargin);
    layOut(m_source, entry.sourceText, sourceOf(entry), textWidth);
    layOut(m_translation, entry.translation, targetOf(entry), textWidth);
    m_height = place(HistoryText::Translation).bottom() + 1 + verticalMargin;
}

QRect HistoryRow::header() const
{
    return {sideMargin, verticalMargin, m_width - 2 * sideMargin, headerHeight};
}

// Its symbol ends where the texts do.
QRect HistoryRow::copyButton() const
{
    QRect button(QPoint(), buttonSize);
    button.moveCenter(header().center());
    button.moveRight(header().right() + 4);
    return button;
}

QRect HistoryRow::place(HistoryText which) const
{
    const int top = header().bottom() + 1 + gap;
    const int width = m_width - 2 * sideMargin;
    if (which == HistoryText::Source)
        return {sideMargin, top, width, m_source.height()};
    return {sideMargin, top + m_source.height() + gap, width, m_translation.height()};
}

int HistoryRows::height(const HistoryEntry &entry, int width)
{
    const auto known = m_heights.constFind(entry.id);
    return known != m_heights.constEnd() ? known->height : row(entry, width).height();
}

bool HistoryRows::isSettled(const HistoryEntry &entry, int width) const
{
    const auto known = m_heights.constFind(entry.id);
    return known != m_heights.constEnd() && known->width == width;
}

const HistoryRow &HistoryRows::row(const HistoryEntry &entry, int width)
{
    const HistoryRow *known = m_rows.object(entry.id);
    if (known && known->width() == width)
        return *known;
    auto *made = new HistoryRow(entry, width);
    m_rows.insert(entry.id, made);
    if (m_heights.size() >= mostHeights)
        m_heights.clear();
    m_heights.insert(entry.id, {width, made->height()});
    return *made;
}

} // namespace nivora
