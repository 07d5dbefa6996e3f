#include "feedback_form.h"

#include "announcer.h"
#include "panel_button.h"
#include "symbol_label.h"
#include "windows/theme.h"

#include "core/feedback_service.h"
#include "session/translation_view_model.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int textPixels = 13; // logical pixels
constexpr int notePixels = 11;

NoteLabel *makeNote(const QString &text, QWidget *parent)
{
    auto *note = new NoteLabel(notePixels, parent);
    note->setText(text);
    note->setWordWrap(true);
    return note;
}

QVBoxLayout *makeColumn(QWidget *page)
{
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    return column;
}

} // namespace

FeedbackForm::FeedbackForm(TranslationViewModel &session, platform::WindowSystem &windowSystem,
                           QWidget *panel)
    : Popover(windowSystem, tr("反馈译文问题"), panel)
    , m_session(session)
    , m_question(makeQuestion())
    , m_thanks(makeThanks())
    , m_announcer(new Announcer(this))
{
    column().addWidget(m_question);
    column().addWidget(m_thanks);
    connect(&m_session, &TranslationViewModel::feedbackPhaseChanged, this, &FeedbackForm::render);
    connect(this, &CardWindow::cancelled, this, &FeedbackForm::close);
}

QWidget *FeedbackForm::makeQuestion()
{
    auto *page = new QWidget(this);
    auto *title = new QLabel(tr("反馈译文问题"), page);
    QFont bold = textFont(textPixels);
    bold.setWeight(QFont::DemiBold);
    title->setFont(bold);
    m_reason = new QComboBox(page);
    m_reason->setFont(textFont(textPixels));
    // On Linux the toolkit gives a combo box its choice for a name.
    m_reason->setAccessibleName(tr("问题类型"));
    m_reason->setAccessibleDescription(m_reason->accessibleName());
    for (const FeedbackReason reason : allFeedbackReasons)
        m_reason->addItem(label(reason), rawValue(reason));
    m_comment = new QLineEdit(page);
    m_comment->setFont(textFont(textPixels));
    m_comment->setPlaceholderText(tr("补充说明（可选）"));
    m_comment->setAccessibleName(m_comment->placeholderText());
    m_failure = new QLabel(tr("提交失败，请稍后再试"), page);
    m_failure->setFont(textFont(textPixels));
    auto *note = makeNote(tr("反馈经审核有效后，双倍返还本次消耗的额度。"), page);
    m_cancel = new PanelButton(PanelButton::Look::Plain, page);
    m_cancel->setText(tr("取消"));
    m_submit = new PanelButton(PanelButton::Look::Prominent, page);
    m_submit->setText(tr("提交"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_submit);
    auto *column = makeColumn(page);
    column->addWidget(title);
    column->addWidget(m_reason);
    column->addWidget(m_comment);
    column->addWidget(m_failure);
    column->addWidget(note);
    column->addLayout(buttons);

    connect(m_submit, &PanelButton::clicked, this, &FeedbackForm::submit);
    connect(m_cancel, &PanelButton::clicked, this, &FeedbackForm::close);
    return page;
}

QWidget *FeedbackForm::makeThanks()
{
    auto *page = new QWidget(this);
    m_thanksLine = new QLabel(tr("已提交，感谢反馈"), page);
    m_thanksLine->setFont(textFont(textPixels));
    auto *note = makeNote(tr("审核有效后将双倍返还本次消耗的额度。"), page);
    note->setAlignment(Qt::AlignHCenter);
    m_done = new PanelButton(PanelButton::Look::Prominent, page);
    m_done->setText(tr("完成"));
    auto *column = makeColumn(page);
    column->addWidget(
        new SymbolLabel(u"checkmark.circle.fill"_s, SymbolLabel::Tone::Success, 28, page), 0,
        Qt::AlignHCenter);
    column->addWidget(m_thanksLine, 0, Qt::AlignHCenter);
    column->addWidget(note);
    column->addWidget(m_done, 0, Qt::AlignHCenter);
    connect(m_done, &PanelButton::clicked, this, &FeedbackForm::close);
    return page;
}

void FeedbackForm::open(QWidget &control)
{
    m_reason->setCurrentIndex(0);
    m_comment->clear();
    render();
    const bool thanks = m_session.feedbackPhase() == FeedbackPhase::Sent;
    openAt(control, thanks ? *static_cast<QWidget *>(m_done) : *m_reason);
}

void FeedbackForm::render()
{
    const FeedbackPhase phase = m_session.feedbackPhase();
    m_question->setVisible(phase != FeedbackPhase::Sent);
    m_thanks->setVisible(phase == FeedbackPhase::Sent);
    m_failure->setVisible(phase == FeedbackPhase::Failed);
    // A button that cannot be used keeps no focus, but has it back for another try.
    const bool sending = phase == FeedbackPhase::Sending;
    if (sending && m_submit->hasFocus()) {
        m_submittedByButton = true;
        m_cancel->setFocus(Qt::OtherFocusReason);
    }
    m_submit->setEnabled(!sending);
    if (!sending && std::exchange(m_submittedByButton, false) && m_cancel->hasFocus())
        m_submit->setFocus(Qt::TabFocusReason);
    if (phase == FeedbackPhase::Sent && isVisible())
        m_done->setFocus();
    announce();
}

void FeedbackForm::announce()
{
    switch (m_session.feedbackPhase()) {
    case FeedbackPhase::Failed:
        return m_announcer->announce(m_failure->text());
    case FeedbackPhase::Sent:
        return m_announcer->announce(m_thanksLine->text());
    case FeedbackPhase::Idle:
    case FeedbackPhase::Sending:
        return m_announcer->withdraw();
    }
}

void FeedbackForm::submit()
{
    if (m_session.feedbackPhase() != FeedbackPhase::Sending)
        m_session.submitFeedback(m_reason->currentData().toString(), m_comment->text());
}

void FeedbackForm::confirm()
{
    m_session.feedbackPhase() == FeedbackPhase::Sent ? close() : submit();
}

void FeedbackForm::close()
{
    hide();
    m_session.closeFeedback();
}

} // namespace nivora
