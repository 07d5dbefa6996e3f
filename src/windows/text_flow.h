#pragma once

#include <QDeadlineTimer>
#include <QFont>
#include <QRectF>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

class QColor;
class QPainter;
class QPalette;
class QTextLayout;

namespace nivora {

// A plain text that grows at its end, laid out in lines of one width.
//
// Text is laid out in portions: a paragraph of many characters is continued in a
// portion of its own where a line begins, so that to add a piece costs the same
// however much stands before it. Positions count UTF-16 units of the text as it
// was given. Lines have one height and one baseline grid, whatever fonts their
// characters come from.
class TextFlow
{
public:
    TextFlow();
    ~TextFlow();

    // Both take effect with the next layOut().
    void setFont(const QFont &font);
    void setWidth(int width); // logical pixels

    void clear();
    void append(QStringView piece);
    const QString &text() const { return m_text; }

    // Lays out what is not yet, as far as the time allows. True when all is done.
    bool layOut(QDeadlineTimer deadline);

    // Of what has been laid out, in logical pixels.
    int height() const;

    struct Range
    {
        int first = 0;
        int last = 0; // the position behind
    };

    // Draws the lines that meet the clip.
    void draw(QPainter &painter, const QRectF &clip, const QColor &ink, const Range &selected,
              const QPalette &palette) const;

    int positionAt(const QPointF &place) const;
    // Between two characters: one pixel wide, as high as its line.
    QRectF caretAt(int position) const;
    // Neighbouring places for a caret.
    int next(int position) const;
    int previous(int position) const;
    Range wordAt(int position) const;

private:
    struct Portion;

    void layOutNext();
    void layOutPortion(Portion &portion);
    void divide();
    const Portion *portionAt(int position) const;
    const Portion *portionBelow(qreal y) const;

    QString m_text;
    QFont m_font;
    int m_width = 0;
    int m_consumed = 0; // characters that are laid out
    std::vector<std::unique_ptr<Portion>> m_portions;
};

} // namespace nivora
