#include "context_popover.h"

#include "editor_binding.h"
#include "panel_button.h"
#include "symbol_label.h"
#include "text_editor.h"

#include "session/translation_view_model.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace nivora {

namespace {

// Logical pixels.
constexpr int editorHeight = 84;
constexpr int editorPixels = 13;
constexpr int notePixels = 12;

} // namespace

ContextPopover::ContextPopover(TranslationViewModel &session, platform::WindowSystem &windowSystem,
                               QWidget *panel)
    : Popover(windowSystem, tr("背景"), panel)
    , m_session(session)
    , m_editor(makeTextEditor(editorPixels, EditorFrame::Field, this))
    , m_text(new EditorBinding(*m_editor,
                               [this](const QString &text) { m_session.editContext(text); }))
{
    auto *note = new NoteLabel(notePixels, this);
    note->setText(tr("回复对方消息时，填入对方的话作为语境，译文更贴切"));
    note->setWordWrap(true);
    note->lower(); // read out before the editor, which was made first
    m_editor->setFixedHeight(editorHeight);
    m_editor->setPlaceholderText(tr("背景（可选，如对方的消息）"));
    m_editor->setAccessibleName(m_editor->placeholderText());
    m_editor->installEventFilter(this);
    auto *clear = new PanelButton(PanelButton::Look::Plain, this);
    clear->setText(tr("清除"));
    auto *done = new PanelButton(PanelButton::Look::Prominent, this);
    done->setText(tr("完成"));

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(clear);
    buttons->addStretch();
    buttons->addWidget(done);
    column().addWidget(note);
    column().addWidget(m_editor);
    column().addLayout(buttons);

    connect(clear, &PanelButton::clicked, m_editor, &QPlainTextEdit::clear);
    connect(done, &PanelButton::clicked, this, &QWidget::hide);
    const auto render = [this] { m_text->show(m_session.contextText()); };
    connect(&m_session, &TranslationViewModel::contextTextChanged, this, render);
    render();
}

void ContextPopover::open(QWidget &control)
{
    openAt(control, *m_editor);
}

// Return is done; with Shift it begins a line.
bool ContextPopover::eventFilter(QObject *object, QEvent *event)
{
    if (object == m_editor && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (isReturn && !key->modifiers().testFlag(Qt::ShiftModifier)) {
            hide();
            return true;
        }
    }
    return Popover::eventFilter(object, event);
}

} // namespace nivora
