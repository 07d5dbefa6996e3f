#include "panel_footer.h"

#include "feedback_form.h"
#include "panel_button.h"
#include "symbol_label.h"

#include "session/translation_view_model.h"
#include "stores/settings_store.h"

#include <QHBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int notePixels = 11; // logical pixels

} // namespace

PanelFooter::PanelFooter(TranslationViewModel &session, platform::WindowSystem &windowSystem,
                         QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_windowSystem(windowSystem)
    , m_primary(new PanelButton(PanelButton::Look::Prominent, this))
    , m_reply(makeButton(u"arrowshape.turn.up.left"_s, tr("以对方原文为背景，撰写并翻译你的回复")))
    , m_speak(makeButton(u"speaker.wave.2"_s, tr("朗读")))
    , m_copy(makeButton(u"doc.on.doc"_s, tr("复制译文")))
    , m_variants(makeButton(u"text.badge.plus"_s, tr("更多译文")))
    , m_feedback(makeButton(u"exclamationmark.bubble"_s, tr("反馈译文问题")))
    , m_tokens(new NoteLabel(notePixels, this, NoteLabel::Tone::Faint))
    , m_historyMark(makeHistoryMark())
{
    m_reply->setText(tr("回复"));
    m_speak->setKind(PanelButton::Kind::Toggle);
    m_feedback->setKind(PanelButton::Kind::Popover);
    connect(m_primary, &PanelButton::clicked, this, &PanelFooter::triggerPrimaryAction);
    connect(m_reply, &PanelButton::clicked, this, &PanelFooter::replyRequested);
    connect(m_speak, &PanelButton::clicked, this, &PanelFooter::toggleSpeech);
    connect(m_copy, &PanelButton::clicked, this, [this] { m_session.copyResult(); });
    connect(m_variants, &PanelButton::clicked, this, [this] { m_session.loadVariants(); });
    connect(m_feedback, &PanelButton::clicked, this, &PanelFooter::toggleFeedback);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 4, 10, 10);
    row->setSpacing(4);
    for (PanelButton *button : {m_primary, m_reply, m_speak, m_copy, m_variants, m_feedback})
        row->addWidget(button);
    row->addStretch();
    row->addWidget(m_tokens);
    row->addWidget(m_historyMark);

    follow();
    renderActions();
    renderSpeech();
    renderNotes();
}

PanelButton *PanelFooter::makeButton(const QString &symbol, const QString &hint)
{
    auto *button = new PanelButton(PanelButton::Look::Plain, this);
    button->setSymbol(symbol);
    button->setHint(hint);
    return button;
}

QWidget *PanelFooter::makeHistoryMark()
{
    auto *mark = new QWidget(this);
    auto *row = new QHBoxLayout(mark);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(3);
    auto *text = new NoteLabel(notePixels, mark, NoteLabel::Tone::Faint);
    text->setText(tr("历史"));
    row->addWidget(
        new SymbolLabel(u"clock.arrow.circlepath"_s, SymbolLabel::Tone::Faint, 12, mark));
    row->addWidget(text);
    mark->setToolTip(tr("复用了本地历史中的相同翻译，未重新请求"));
    text->setAccessibleName(mark->toolTip());
    return mark;
}

void PanelFooter::follow()
{
    using Session = TranslationViewModel;
    for (const auto signal :
         {&Session::translatedTextReplaced, &Session::phaseChanged, &Session::modeChanged,
          &Session::hasInsertTargetChanged, &Session::justCopiedChanged, &Session::directionChanged,
          &Session::sourceTextChanged})
        connect(&m_session, signal, this, &PanelFooter::renderActions);
    for (const auto signal : {&Session::isSpeakingChanged, &Session::isSpeechAvailableChanged})
        connect(&m_session, signal, this, &PanelFooter::renderSpeech);
    for (const auto signal : {&Session::lastTokensChanged, &Session::fromHistoryChanged})
        connect(&m_session, signal, this, &PanelFooter::renderNotes);
    connect(&m_session.settings().useCustomBackend, &SettingNotifier::changed, this,
            &PanelFooter::renderActions);
    // The first piece of a run changes the phase before the text is there.
    connect(&m_session, &Session::translatedTextAppended, this, [this] {
        if (m_copy->isHidden())
            renderActions();
    });
}

QString PanelFooter::primaryText() const
{
    const bool reply = m_session.mode() == PanelMode::Reply;
    const bool copied = m_session.justCopied();
    switch (m_session.primaryAction()) {
    case PrimaryAction::Replace:
        return tr("⌘↩ 替换原文");
    case PrimaryAction::Insert:
        return tr("⌘↩ 插入到输入框");
    case PrimaryAction::Copy:
        if (reply)
            return copied ? tr("已复制，粘到回复框") : tr("⌘↩ 复制，粘到回复框");
        return copied ? tr("已复制") : tr("⌘↩ 复制");
    case PrimaryAction::None:
        break;
    }
    return {};
}

void PanelFooter::renderActions()
{
    const QString text = primaryText();
    m_primary->setText(text);
    m_primary->updateGeometry();
    m_primary->setVisible(!text.isEmpty());
    m_reply->setVisible(m_session.showReply());
    m_speak->setVisible(m_session.speechTarget().has_value());
    m_copy->setSymbol(m_session.justCopied() ? u"checkmark"_s : u"doc.on.doc"_s);
    m_copy->setVisible(!m_session.translatedText().isEmpty());
    m_variants->setVisible(m_session.canShowVariants());
    m_feedback->setVisible(m_session.canSubmitFeedback());
    renderEmptiness();
}

void PanelFooter::renderSpeech()
{
    const bool available = m_session.isSpeechAvailable();
    m_speak->setSymbol(m_session.isSpeaking() ? u"stop.circle"_s : u"speaker.wave.2"_s);
    // It may be pressed all the same: the service may be back.
    m_speak->setDimmed(!available);
    m_speak->setAccessibleDescription(available ? QString() : tr("语音服务不可用"));
}

void PanelFooter::renderNotes()
{
    const qint64 tokens = m_session.lastTokens().value_or(0);
    m_tokens->setText(tr("%1 tok").arg(tokens));
    m_tokens->setVisible(tokens >= 1);
    m_historyMark->setVisible(m_session.fromHistory());
    renderEmptiness();
}

void PanelFooter::renderEmptiness()
{
    const QWidgetList all{m_primary,  m_reply,    m_speak,  m_copy,
                          m_variants, m_feedback, m_tokens, m_historyMark};
    setVisible(!std::ranges::all_of(all, &QWidget::isHidden));
}

void PanelFooter::triggerPrimaryAction()
{
    switch (m_session.primaryAction()) {
    case PrimaryAction::Replace:
    case PrimaryAction::Insert:
        m_session.insert();
        break;
    case PrimaryAction::Copy:
        m_session.copyResult();
        break;
    case PrimaryAction::None:
        break;
    }
}

void PanelFooter::toggleSpeech()
{
    if (m_session.isSpeaking())
        m_session.stopSpeaking();
    else
        m_session.speakCurrent();
}

void PanelFooter::toggleFeedback()
{
    if (m_form && m_form->isVisible())
        return closePopover();
    if (!m_form)
        m_form = new FeedbackForm(m_session, m_windowSystem, this);
    m_form->open(*m_feedback);
}

void PanelFooter::closePopover()
{
    if (m_form)
        m_form->hide();
}

} // namespace nivora
