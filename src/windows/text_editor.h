#pragma once

#include <QString>

class QPlainTextEdit;
class QWidget;

namespace nivora {

enum class EditorFrame {
    None,  // on the panel itself
    Field, // a field of its own
};

// A plain editor in the product's looks. `pixelSize` is of its text.
QPlainTextEdit *makeTextEditor(int pixelSize, EditorFrame frame, QWidget *parent);

// Writes the text there unless it is there already, without telling of a change.
void showProgrammatically(QPlainTextEdit &editor, const QString &text);

} // namespace nivora
