#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QPlainTextEdit;

namespace nivora {

// Keeps an editor and a text elsewhere the same. An editor writes line ends and
// unusual spaces in its own way, and an input method's preedit changes its document,
// but neither is an edit.
class EditorBinding : public QObject
{
    Q_OBJECT

public:
    // `edited` gets what the user has made of the text. Owned by the editor.
    EditorBinding(QPlainTextEdit &editor, std::function<void(const QString &)> edited);

    // Writes the text there, unless it is there already.
    void show(const QString &text);

private:
    void onTextChanged();

    QPlainTextEdit &m_editor;
    std::function<void(const QString &)> m_edited;
    QString m_text;  // as it is elsewhere
    QString m_shown; // as the editor writes it
};

} // namespace nivora
