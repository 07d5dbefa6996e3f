#include "editor_binding.h"

#include "text_editor.h"

#include <QPlainTextEdit>

namespace nivora {

EditorBinding::EditorBinding(QPlainTextEdit &editor, std::function<void(const QString &)> edited)
    : QObject(&editor)
    , m_editor(editor)
    , m_edited(std::move(edited))
{
    connect(&m_editor, &QPlainTextEdit::textChanged, this, &EditorBinding::onTextChanged);
}

void EditorBinding::show(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    showProgrammatically(m_editor, text);
    m_shown = m_editor.toPlainText();
}

void EditorBinding::onTextChanged()
{
    const QString now = m_editor.toPlainText();
    if (now == m_shown)
        return;
    m_text = m_shown = now;
    m_edited(now);
}

} // namespace nivora
