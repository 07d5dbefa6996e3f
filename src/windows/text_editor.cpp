#include "text_editor.h"

#include "windows/theme.h"

#include <QPlainTextEdit>
#include <QSignalBlocker>

namespace nivora {

QPlainTextEdit *makeTextEditor(int pixelSize, EditorFrame frame, QWidget *parent)
{
    auto *editor = new QPlainTextEdit(parent);
    editor->setFont(textFont(pixelSize));
    editor->setTabChangesFocus(true);
    editor->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    editor->document()->setDocumentMargin(frame == EditorFrame::None ? 2 : 5);
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
    editor.setPlainText(text);
    editor.moveCursor(QTextCursor::End);
}

} // namespace nivora
