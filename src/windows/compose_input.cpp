#include "compose_input.h"

#include "panel_button.h"
#include "windows/theme.h"

#include "session/translation_view_model.h"
#include "stores/settings_store.h"

#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int editorHeight = 72; // logical pixels
constexpr int editorPixels = 15;

} // namespace

ComposeInput::ComposeInput(TranslationViewModel &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_editor(new QPlainTextEdit(this))
    , m_translate(new PanelButton(PanelButton::Look::Prominent, this))
{
    m_editor->setFont(textFont(editorPixels));
    m_editor->setFixedHeight(editorHeight);
    m_editor->setFrameShape(QFrame::NoFrame);
    m_editor->setTabChangesFocus(true);
    m_editor->setAccessibleName(tr("原文"));
    m_editor->document()->setDocumentMargin(2);
    QPalette transparent = m_editor->palette();
    transparent.setColor(QPalette::Base, Qt::transparent);
    m_editor->setPalette(transparent);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(12, 8, 12, 8);
    column->setSpacing(6);
    column->addWidget(m_editor);
    column->addWidget(m_translate, 0, Qt::AlignLeft);

    connect(m_editor, &QPlainTextEdit::textChanged, this,
            [this] { m_session.editSource(m_editor->toPlainText()); });
    connect(m_translate, &PanelButton::clicked, this, [this] { m_session.translateNow(); });

    connect(&m_session, &TranslationViewModel::sourceTextChanged, this, [this] {
        renderSource();
        renderButton();
    });
    connect(&m_session, &TranslationViewModel::modeChanged, this, &ComposeInput::renderSource);
    connect(&m_session, &TranslationViewModel::phaseChanged, this, &ComposeInput::renderButton);
    connect(&m_session, &TranslationViewModel::translatedTextReplaced, this,
            &ComposeInput::renderButton);
    connect(&m_session.settings().liveTranslate, &SettingNotifier::changed, this,
            &ComposeInput::renderButton);
    renderSource();
    renderButton();
}

// A selected text is not shown. To lay it out would cost a large one its time, and
// to write it into the editor would tell it to every assistive tool.
void ComposeInput::renderSource()
{
    const QString text =
        m_session.mode() == PanelMode::Selection ? QString() : m_session.sourceText();
    if (m_editor->toPlainText() == text)
        return;
    const QSignalBlocker programmatic(m_editor);
    m_editor->setPlainText(text);
}

void ComposeInput::renderButton()
{
    const bool busy = m_session.isTranslating();
    m_translate->setText(busy ? tr("翻译中…") : tr("翻译") + u"  ⌘↩"_s);
    m_translate->setAccessibleName(busy ? tr("翻译中…") : tr("翻译"));
    m_translate->updateGeometry();
    m_translate->setEnabled(!busy && !m_session.sourceText().trimmed().isEmpty());
    m_translate->setVisible(!m_session.settings().liveTranslate.value() &&
                            m_session.translatedText().isEmpty());
}

void ComposeInput::focusEditor()
{
    m_editor->setFocus();
}

bool ComposeInput::triggerTranslate()
{
    if (isHidden() || m_translate->isHidden() || !m_translate->isEnabled())
        return false;
    m_session.translateNow();
    return true;
}

} // namespace nivora
