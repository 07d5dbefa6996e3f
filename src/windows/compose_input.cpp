#include "compose_input.h"

#include "announcer.h"
#include "editor_binding.h"
#include "panel_button.h"
#include "symbol_label.h"
#include "text_editor.h"
#include "windows/theme.h"
#include "windows/translation_panel_view.h"

#include "session/translation_view_model.h"
#include "stores/settings_store.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int sideMargin = 12;
constexpr int editorHeight = 72;
constexpr int editorPixels = 15;
constexpr int messagePixels = 12;
constexpr int symbolSide = 14;
constexpr int gap = 6;

} // namespace

ComposeInput::ComposeInput(TranslationViewModel &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_editor(makeTextEditor(editorPixels, EditorFrame::None, this))
    , m_source(
          new EditorBinding(*m_editor, [this](const QString &text) { m_session.editSource(text); }))
    , m_microphone(new PanelButton(PanelButton::Look::Plain, this))
    , m_voiceError(makeVoiceError())
    , m_translate(new PanelButton(PanelButton::Look::Prominent, this))
    , m_announcer(new Announcer(this))
{
    m_editor->setFixedHeight(editorHeight);
    m_editor->setAccessibleName(tr("原文"));

    auto *row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(m_editor);
    row->addWidget(m_microphone, 0, Qt::AlignTop);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(sideMargin, 8, 8, 8);
    column->setSpacing(gap);
    column->addLayout(row);
    column->addWidget(m_voiceError);
    column->addWidget(m_translate, 0, Qt::AlignLeft);

    m_microphone->setKind(PanelButton::Kind::Toggle);
    connect(m_microphone, &PanelButton::clicked, this, [this] { m_session.toggleVoice(); });
    connect(m_translate, &PanelButton::clicked, this, [this] { m_session.translateNow(); });

    connect(&m_session, &TranslationViewModel::sourceTextChanged, this, [this] {
        renderSource();
        renderButton();
    });
    connect(&m_session, &TranslationViewModel::modeChanged, this, &ComposeInput::renderSource);
    connect(&m_session, &TranslationViewModel::phaseChanged, this, &ComposeInput::renderButton);
    connect(&m_session, &TranslationViewModel::translatedTextReplaced, this,
            &ComposeInput::renderButton);
    // The first piece of a run changes the phase before the text is there.
    connect(&m_session, &TranslationViewModel::translatedTextAppended, this, [this] {
        if (!m_translate->isHidden())
            renderButton();
    });
    connect(&m_session.settings().liveTranslate, &SettingNotifier::changed, this,
            &ComposeInput::renderButton);
    connect(&m_session, &TranslationViewModel::isListeningChanged, this,
            &ComposeInput::renderVoice);
    connect(&m_session, &TranslationViewModel::voiceErrorChanged, this, &ComposeInput::renderVoice);
    renderSource();
    renderVoice();
    renderButton();
}

QWidget *ComposeInput::makeVoiceError()
{
    auto *row = new QWidget(this);
    m_voiceMessage = new QLabel(row);
    m_voiceMessage->setFont(textFont(messagePixels));
    m_voiceMessage->setTextFormat(Qt::PlainText);
    m_voiceMessage->setWordWrap(true);
    m_voiceSettings = new PanelButton(PanelButton::Look::Plain, row);
    m_voiceSettings->setText(tr("打开设置"));
    m_voiceSettings->setActive(true);
    connect(m_voiceSettings, &PanelButton::clicked, this,
            [this] { m_session.openVoiceSettings(); });
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    layout->addWidget(new SymbolLabel(u"exclamationmark.triangle.fill"_s,
                                      SymbolLabel::Tone::Warning, symbolSide, row));
    layout->addWidget(m_voiceMessage, 1);
    layout->addWidget(m_voiceSettings);
    return row;
}

// A selected text is not shown. To lay it out would cost a large one its time, and
// to write it into the editor would tell it to every assistive tool.
void ComposeInput::renderSource()
{
    m_source->show(m_session.mode() == PanelMode::Selection ? QString() : m_session.sourceText());
}

void ComposeInput::renderVoice()
{
    const bool listening = m_session.isListening();
    m_microphone->setSymbol(listening ? u"mic.fill"_s : u"mic"_s);
    m_microphone->setToolTip(listening ? tr("停止语音输入") : tr("语音输入（说话转文字）"));
    m_microphone->setAccessibleName(tr("语音输入"));
    m_microphone->setActive(listening);

    const QString message = m_session.voiceError();
    const bool opens = m_session.voiceErrorOpensSettings();
    m_voiceError->setVisible(!message.isEmpty());
    m_voiceSettings->setVisible(opens);
    if (m_voiceMessage->text() != message) {
        m_voiceMessage->setText(message);
        message.isEmpty() ? m_announcer->withdraw() : m_announcer->announce(message);
    }
    if (message.isEmpty())
        return;
    // The panel's width is known, so the label need not be asked for its own.
    int width = TranslationPanelView::panelWidth - sideMargin - 8 - symbolSide - gap;
    if (opens)
        width -= m_voiceSettings->sizeHint().width() + gap;
    m_voiceMessage->setFixedHeight(m_voiceMessage->heightForWidth(width));
}

void ComposeInput::renderButton()
{
    const bool busy = m_session.isTranslating();
    m_translate->setText(busy ? tr("翻译中…") : tr("翻译  ⌘↩"));
    m_translate->setAccessibleName(busy ? tr("翻译中…") : tr("翻译"));
    m_translate->updateGeometry();
    m_translate->setEnabled(!busy && !m_session.sourceText().trimmed().isEmpty());
    m_translate->setVisible(!m_session.settings().liveTranslate.value() &&
                            m_session.translatedText().isEmpty());
}

void ComposeInput::focusEditor(Qt::FocusReason reason)
{
    m_editor->setFocus(reason);
}

bool ComposeInput::triggerTranslate()
{
    if (isHidden() || m_translate->isHidden() || !m_translate->isEnabled())
        return false;
    m_session.translateNow();
    return true;
}

} // namespace nivora
