#include "text_editor.h"

#include "windows/theme.h"

#include <QMimeData>
#include <QPlainTextEdit>
#include <QSignalBlocker>

#include <algorithm>

namespace nivora {

namespace {

// To find where so long a word breaks takes Qt a time that grows with the square of
// its length, again for each key: 5 s for 170,000 characters. Broken anywhere they
// take 0.1 s.
constexpr int longestWord = 2000;

bool hasEndlessWord(QStringView text)
{
    int length = 0;
    return std::ranges::any_of(text, [&length](QChar c) {
        length = c.isLetterOrNumber() || c.isPunct() || c.isSymbol() ? length + 1 : 0;
        // Ideographs may be parted anywhere as it is.
        if (c.script() == QChar::Script_Han)
            length = 0;
        return length > longestWord;
    });
}

class TextEditor final : public QPlainTextEdit
{
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    void insertFromMimeData(const QMimeData *source) override
    {
        if (source->hasText() && hasEndlessWord(source->text()))
            setWordWrapMode(QTextOption::WrapAnywhere);
        QPlainTextEdit::insertFromMimeData(source);
    }
};

} // namespace

QPlainTextEdit *makeTextEditor(int pixelSize, EditorFrame frame, QWidget *parent)
{
    auto *editor = new TextEditor(parent);
    editor->setFont(textFont(pixelSize));
    editor->setTabChangesFocus(true);
    editor->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    editor->document()->setDocumentMargin(frame == EditorFrame::None ? 2 : 5);
    // The frame has round corners and paints the ground.
    editor->viewport()->setAutoFillBackground(false);
    if (frame == EditorFrame::None) {
        editor->setFrameShape(QFrame::NoFrame);
        QPalette transparent;
        transparent.setColor(QPalette::Base, Qt::transparent);
        editor->setPalette(transparent);
    }
    return editor;
}

void showProgrammatically(QPlainTextEdit &editor, const QString &text)
{
    if (editor.toPlainText() == text)
        return;
    const QSignalBlocker programmatic(&editor);
    editor.setWordWrapMode(hasEndlessWord(text) ? QTextOption::WrapAnywhere
                                                : QTextOption::WrapAtWordBoundaryOrAnywhere);
    editor.setPlainText(text);
    editor.moveCursor(QTextCursor::End);
}

} // namespace nivora
