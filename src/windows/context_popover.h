#pragma once

#include "popover.h"

class QPlainTextEdit;

namespace nivora {

class EditorBinding;
class TranslationViewModel;

// Where the user tells what the text answers.
class ContextPopover : public Popover
{
    Q_OBJECT

public:
    ContextPopover(TranslationViewModel &session, platform::WindowSystem &windowSystem,
                   QWidget *panel);

    void open(QWidget &control);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void confirm() override { hide(); }

    TranslationViewModel &m_session;
    QPlainTextEdit *m_editor;
    EditorBinding *m_text; // owned by the editor
};

} // namespace nivora
