#include "text_flow.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>
#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>

namespace nivora {

namespace {

// A portion is laid out anew whenever it grows. One that has a single line, of
// characters without a width, may grow longer before it is cut.
constexpr int longestPortion = 400;
constexpr int longestLine = 40 * longestPortion; // costs 3 ms

constexpr double lineSpacing = 1.5; // times the font's size

bool endsParagraph(QChar character)
{
    return character == u'\n' || character == QChar::ParagraphSeparator;
}

bool isAnnotationMark(char16_t unit)
{
    return unit >= 0xFFF9 && unit <= 0xFFFC; // and the place of an embedded object
}

// Of as many units, without what fonts have only boxes for.
QString printable(QStringView text)
{
    // A control character belongs to the one before it, as this one does.
    constexpr QChar invisible(0x200C);
    QString shown = text.toString();
    for (qsizetype i = 0; i < shown.size(); ++i) {
        const QChar c = shown[i];
        if (c == u'\v' || c == u'\f' || c == QChar(0x85))
            shown[i] = QChar::LineSeparator;
        else if (c.isHighSurrogate() && i + 1 < shown.size() && shown[i + 1].isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            shown[i] = QChar::ReplacementCharacter;
        else if (c != u'\t' && (c.category() == QChar::Other_Control || c.isNonCharacter() ||
                                isAnnotationMark(c.unicode())))
            shown[i] = invisible;
    }
    return shown;
}

} // namespace

struct TextFlow::Portion
{
    int start = 0;
    int length = 0;
    bool ended = false; // a paragraph's end follows
    bool rightToLeft = false;
    bool continues = false; // the paragraph began in an earlier portion
    qreal top = 0;
    qreal height = 0;
    qreal lastTop = 0; // of the last line, from the portion's top
    int lines = 0;     // that are its own: the layout may have one more
    QTextLayout layout;

    int end() const { return start + length; }
};

TextFlow::TextFlow() = default;
TextFlow::~TextFlow() = default;

void TextFlow::setFont(const QFont &font)
{
    if (m_font == font)
        return;
    m_font = font;
    m_portions.clear();
    m_consumed = 0;
}

void TextFlow::setWidth(int width)
{
    if (m_width == width)
        return;
    m_width = width;
    m_portions.clear();
    m_consumed = 0;
}

void TextFlow::clear()
{
    m_text.clear();
    m_portions.clear();
    m_consumed = 0;
}

void TextFlow::append(QStringView piece)
{
    m_text += piece;
}

bool TextFlow::layOut(QDeadlineTimer deadline)
{
    while (m_consumed < m_text.size()) {
        layOutNext();
        if (deadline.hasExpired())
            break;
    }
    return m_consumed == m_text.size();
}

int TextFlow::height() const
{
    return m_portions.empty() ? 0 : qCeil(m_portions.back()->top + m_portions.back()->height);
}

void TextFlow::layOutNext()
{
    if (m_portions.empty() || m_portions.back()->ended) {
        auto next = std::make_unique<Portion>();
        next->start = m_consumed;
        next->top = m_portions.empty() ? 0 : m_portions.back()->top + m_portions.back()->height;
        m_portions.push_back(std::move(next));
    }
    Portion &last = *m_portions.back();
    const QStringView rest =
        QStringView(m_text)
            .sliced(m_consumed)
            .first(std::min<qsizetype>(longestPortion, m_text.size() - m_consumed));
    const auto paragraphEnd = std::ranges::find_if(rest, endsParagraph);
    const auto taken = int(paragraphEnd - rest.begin());
    last.length += taken;
    last.ended = paragraphEnd != rest.end();
    m_consumed += taken + (last.ended ? 1 : 0);
    if (!last.continues)
        last.rightToLeft = QStringView(m_text).sliced(last.start, last.length).isRightToLeft();
    layOutPortion(last);
    if (last.length > longestPortion)
        divide();
}

// Ends the last portion where its last line begins. Its layout keeps that line,
// unseen: laid out without it, others might break elsewhere.
void TextFlow::divide()
{
    Portion &full = *m_portions.back();
    int cut = full.length;
    if (full.layout.lineCount() > 1)
        cut = full.layout.lineAt(full.layout.lineCount() - 1).textStart();
    else if (full.length < longestLine)
        return;
    auto rest = std::make_unique<Portion>();
    rest->start = full.start + cut;
    rest->length = full.length - cut;
    rest->ended = std::exchange(full.ended, false);
    rest->rightToLeft = full.rightToLeft;
    rest->continues = true;
    if (cut < full.length) {
        --full.lines;
        full.height = full.lastTop;
        full.length = cut;
    }
    rest->top = full.top + full.height;
    layOutPortion(*rest);
    m_portions.push_back(std::move(rest));
}

void TextFlow::layOutPortion(Portion &portion)
{
    // A layout does not mirror what is aligned with the beginning.
    QTextOption option(portion.rightToLeft ? Qt::AlignRight : Qt::AlignLeft);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(portion.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    portion.layout.setTextOption(option);
    portion.layout.setFont(m_font);
    portion.layout.setText(printable(QStringView(m_text).sliced(portion.start, portion.length)));

    const QFontMetricsF metrics(m_font);
    const qreal pitch = std::ceil(m_font.pixelSize() * lineSpacing);
    const qreal baseline = std::round((pitch + metrics.ascent() - metrics.descent()) / 2);
    qreal y = 0;
    portion.layout.beginLayout();
    for (QTextLine line = portion.layout.createLine(); line.isValid();
         line = portion.layout.createLine()) {
        line.setLineWidth(m_width);
        const qreal above = std::max(baseline - line.ascent(), 0.0);
        line.setPosition({0, y + above});
        portion.lastTop = y;
        y += std::max(pitch, std::ceil(above + line.height()));
    }
    portion.layout.endLayout();
    portion.lines = portion.layout.lineCount();
    portion.height = y;
}

const TextFlow::Portion *TextFlow::portionAt(int position) const
{
    const auto after = std::ranges::upper_bound(m_portions, position, {},
                                                [](const auto &portion) { return portion->start; });
    return after == m_portions.begin() ? nullptr : std::prev(after)->get();
}

const TextFlow::Portion *TextFlow::portionBelow(qreal y) const
{
    const auto found = std::ranges::upper_bound(
        m_portions, y, {}, [](const auto &portion) { return portion->top + portion->height; });
    if (found != m_portions.end())
        return found->get();
    return m_portions.empty() ? nullptr : m_portions.back().get();
}

void TextFlow::draw(QPainter &painter, const QRectF &clip, const QColor &ink, const Range &selected,
                    const QPalette &palette) const
{
    painter.setPen(ink);
    const auto first =
        std::ranges::upper_bound(m_portions, clip.top(), {}, [](const auto &portion) {
            return portion->top + portion->height;
        });
    for (auto each = first; each != m_portions.end() && (*each)->top < clip.bottom(); ++each) {
        const Portion &portion = **each;
        QList<QTextLayout::FormatRange> highlights;
        const int from = std::max(selected.first - portion.start, 0);
        const int to = std::min(selected.last - portion.start, portion.length);
        if (from < to) {
            QTextLayout::FormatRange range{from, to - from, {}};
            range.format.setBackground(palette.brush(QPalette::Highlight));
            range.format.setForeground(palette.brush(QPalette::HighlightedText));
            highlights << range;
        }
        QRectF own = clip;
        own.setBottom(std::min(own.bottom(), portion.top + portion.height - 0.5));
        portion.layout.draw(&painter, {0, portion.top}, highlights, own);
    }
}

int TextFlow::positionAt(const QPointF &place) const
{
    if (place.y() < 0)
        return 0;
    if (place.y() >= height())
        return m_consumed;
    const Portion *portion = portionBelow(place.y());
    if (!portion || portion->lines == 0)
        return portion ? portion->start : 0;
    int line = 0;
    while (line + 1 < portion->lines &&
           portion->layout.lineAt(line + 1).y() <= place.y() - portion->top)
        ++line;
    return portion->start + portion->layout.lineAt(line).xToCursor(place.x());
}

QRectF TextFlow::caretAt(int position) const
{
    const Portion *portion = portionAt(position);
    if (!portion || portion->lines == 0)
        return {};
    const int within = std::clamp(position - portion->start, 0, portion->length);
    const QTextLine line = portion->layout.lineForTextPosition(within);
    if (!line.isValid())
        return {};
    return {line.cursorToX(within), portion->top + line.y(), 1, line.height()};
}

int TextFlow::next(int position) const
{
    const Portion *portion = portionAt(position);
    if (!portion || position >= portion->end())
        return std::min<int>(position + 1, int(m_text.size()));
    return portion->start + portion->layout.nextCursorPosition(position - portion->start);
}

int TextFlow::previous(int position) const
{
    const Portion *portion = portionAt(position);
    if (!portion || position <= portion->start)
        return std::max(position - 1, 0);
    return portion->start + portion->layout.previousCursorPosition(position - portion->start);
}

TextFlow::Range TextFlow::wordAt(int position) const
{
    const Portion *portion = portionAt(position);
    if (!portion)
        return {};
    const QStringView text = QStringView(m_text).sliced(portion->start, portion->length);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    finder.setPosition(std::min(position - portion->start, portion->length));
    if (!(finder.boundaryReasons() & QTextBoundaryFinder::StartOfItem))
        finder.toPreviousBoundary();
    const auto first = std::max<qsizetype>(finder.position(), 0);
    const auto last = finder.toNextBoundary();
    return {portion->start + int(first), last < 0 ? portion->end() : portion->start + int(last)};
}

} // namespace nivora
