#include "streaming_text_view.h"

#include <QAbstractTextDocumentLayout>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int frameMilliseconds = 16;

// A block of the document is laid out anew whenever it grows, so a paragraph of
// more characters than this is continued in a block of its own, marked by this
// user state.
constexpr int longestBlock = 1500;
constexpr int continuation = 1;

} // namespace

StreamingTextView::StreamingTextView(QWidget *parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setAcceptRichText(false);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setLineWrapMode(QTextEdit::WidgetWidth);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    document()->setDocumentMargin(0);
    viewport()->setAutoFillBackground(false);
    QPalette transparent = palette();
    transparent.setColor(QPalette::Base, Qt::transparent);
    setPalette(transparent);

    m_flushTimer.setSingleShot(true);
    m_flushTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_flushTimer, &QTimer::timeout, this, &StreamingTextView::flush);
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            [this] {
                const int height = textHeight();
                if (std::exchange(m_reportedHeight, height) != height)
                    Q_EMIT textHeightChanged();
            });
}

void StreamingTextView::replaceText(const QString &text)
{
    m_pending.clear();
    m_flushTimer.stop();
    clear();
    verticalScrollBar()->setValue(0);
    if (!text.isEmpty()) {
        m_pending = text;
        flush();
    }
}

void StreamingTextView::appendText(const QString &piece)
{
    m_pending += piece;
    if (m_flushTimer.isActive())
        return;
    // At once if the last frame is long gone, else with the next one.
    const qint64 rest = m_sinceFlush.isValid() ? frameMilliseconds - m_sinceFlush.elapsed() : 0;
    m_flushTimer.start(int(std::max<qint64>(rest, 0)));
}

void StreamingTextView::flush()
{
    m_sinceFlush.start();
    QTextCursor end(document());
    QStringView rest = m_pending;
    while (!rest.isEmpty()) {
        // In portions, so that a long text at once costs no more than its length.
        const QStringView portion = rest.first(std::min<qsizetype>(rest.size(), longestBlock));
        rest = rest.sliced(portion.size());
        end.movePosition(QTextCursor::End);
        end.insertText(portion.toString());
        divideParagraph();
    }
    m_pending.clear();
}

// Ends the last block where its last line begins, which looks the same.
void StreamingTextView::divideParagraph()
{
    const QTextBlock last = document()->lastBlock();
    if (last.length() <= longestBlock)
        return;
    const QTextLayout *layout = last.layout();
    if (!layout || layout->lineCount() < 2)
        return;
    QTextCursor cursor(document());
    cursor.setPosition(last.position() + layout->lineAt(layout->lineCount() - 1).textStart());
    cursor.insertBlock();
    cursor.block().setUserState(continuation);
}

QString StreamingTextView::text() const
{
    QString whole;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockNumber() > 0 && block.userState() != continuation)
            whole += u'\n';
        whole += block.text();
    }
    return whole + m_pending;
}

int StreamingTextView::textHeight() const
{
    return qCeil(document()->size().height());
}

QMimeData *StreamingTextView::createMimeDataFromSelection() const
{
    const QTextCursor selection = textCursor();
    QString selected;
    for (QTextBlock block = document()->findBlock(selection.selectionStart());
         block.isValid() && block.position() <= selection.selectionEnd(); block = block.next()) {
        if (block.position() > selection.selectionStart() && block.userState() != continuation)
            selected += u'\n';
        const int from = std::max(selection.selectionStart() - block.position(), 0);
        const int to = std::min(selection.selectionEnd() - block.position(), block.length() - 1);
        selected += QStringView(block.text()).sliced(from, std::max(to - from, 0));
    }
    // What the view shows as line separators were line ends in the text.
    selected.replace(QChar::LineSeparator, u'\n');
    auto *data = new QMimeData;
    data->setText(selected);
    return data;
}

} // namespace nivora
