#include "result_area.h"

#include "panel_button.h"
#include "spinner.h"
#include "streaming_text_view.h"
#include "symbol_label.h"
#include "windows/theme.h"

#include "session/translation_view_model.h"
#include "stores/settings_store.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QResizeEvent>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int sideMargin = 14;
constexpr int verticalMargin = 10;
constexpr int leastTextHeight = 24;
constexpr int greatestTextHeight = 320; // beyond this the text scrolls
constexpr int resultPixels = 15;
constexpr int spinnerSide = 16;

} // namespace

ResultArea::ResultArea(TranslationViewModel &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_text(new StreamingTextView(this))
    , m_spinner(new Spinner(spinnerSide, this))
    , m_error(new QWidget(this))
    , m_errorMessage(new QLabel(m_error))
    , m_hint(new QWidget(this))
{
    m_text->setAccessibleName(tr("译文"));
    m_text->setFont(textFont(resultPixels));
    m_spinner->setAccessibleName(tr("翻译中"));

    auto *errorRow = new QHBoxLayout(m_error);
    errorRow->setContentsMargins(0, 0, 0, 0);
    errorRow->setSpacing(8);
    m_errorMessage->setWordWrap(true);
    m_errorMessage->setFont(textFont(13));
    m_errorMessage->setTextFormat(Qt::PlainText);
    auto *retry = new PanelButton(PanelButton::Look::Plain, m_error);
    retry->setText(tr("重试"));
    retry->setActive(true);
    connect(retry, &PanelButton::clicked, this, [this] { m_session.translateNow(); });
    errorRow->addWidget(new SymbolLabel(u"exclamationmark.triangle.fill"_s,
                                        SymbolLabel::Tone::Warning, 16, m_error));
    errorRow->addWidget(m_errorMessage, 1);
    errorRow->addWidget(retry);

    auto *hintRow = new QHBoxLayout(m_hint);
    hintRow->setContentsMargins(0, 0, 0, 0);
    hintRow->setSpacing(8);
    auto *hintText = new NoteLabel(resultPixels, m_hint);
    hintText->setText(tr("输入文字，自动翻译。"));
    hintRow->addWidget(
        new SymbolLabel(u"character.cursor.ibeam"_s, SymbolLabel::Tone::Secondary, 16, m_hint));
    hintRow->addWidget(hintText, 1);

    connect(m_text, &StreamingTextView::textHeightChanged, this, [this] {
        updateGeometry();
        layOut();
    });
    connect(&m_session, &TranslationViewModel::translatedTextReplaced, this, [this] {
        m_text->replaceText(m_session.translatedText());
        renderPhase();
    });
    connect(&m_session, &TranslationViewModel::translatedTextAppended, m_text,
            &StreamingTextView::appendText);
    connect(&m_session, &TranslationViewModel::phaseChanged, this, &ResultArea::renderPhase);
    connect(&m_session, &TranslationViewModel::modeChanged, this, &ResultArea::renderPhase);
    connect(&m_session, &TranslationViewModel::sourceTextChanged, this, &ResultArea::renderPhase);
    connect(&m_session.settings().liveTranslate, &SettingNotifier::changed, this,
            &ResultArea::renderPhase);
    connect(&m_session, &TranslationViewModel::directionChanged, this, &ResultArea::renderFont);

    renderFont();
    m_text->replaceText(m_session.translatedText());
    renderPhase();
}

ResultArea::Showing ResultArea::showing() const
{
    const bool hasText = !m_session.translatedText().isEmpty();
    switch (m_session.phase().kind) {
    case Phase::Kind::Error:
        return Showing::Error;
    case Phase::Kind::Loading:
        return hasText ? Showing::Text : Showing::Spinner;
    case Phase::Kind::Streaming:
    case Phase::Kind::Done:
        return Showing::Text;
    case Phase::Kind::Idle:
        break;
    }
    const bool invites = m_session.mode() != PanelMode::Selection &&
                         m_session.settings().liveTranslate.value() &&
                         m_session.sourceText().trimmed().isEmpty();
    return invites ? Showing::Hint : Showing::Nothing;
}

void ResultArea::renderPhase()
{
    const Showing now = showing();
    if (now == Showing::Error)
        m_errorMessage->setText(m_session.phase().message);
    m_text->setVisible(now == Showing::Text);
    m_spinner->setVisible(now == Showing::Spinner);
    m_error->setVisible(now == Showing::Error);
    m_hint->setVisible(now == Showing::Hint);
    setVisible(now != Showing::Nothing);
    updateGeometry();
    layOut();
}

void ResultArea::renderFont()
{
    m_text->setFont(textFont(resultPixels, m_session.effectiveTarget()));
}

int ResultArea::contentHeight(int width) const
{
    const int inner = width - 2 * sideMargin;
    switch (showing()) {
    case Showing::Nothing:
        return 0;
    case Showing::Hint:
        return m_hint->sizeHint().height();
    case Showing::Spinner:
        return spinnerSide + 2 * 6;
    case Showing::Error:
        return std::max(m_error->layout()->heightForWidth(inner), leastTextHeight);
    case Showing::Text:
        break;
    }
    return std::clamp(m_text->textHeight(), leastTextHeight, greatestTextHeight);
}

int ResultArea::heightForWidth(int width) const
{
    return contentHeight(width) + 2 * verticalMargin;
}

QSize ResultArea::sizeHint() const
{
    return {width(), heightForWidth(width())};
}

void ResultArea::resizeEvent(QResizeEvent *event)
{
    if (event->oldSize().width() != event->size().width())
        updateGeometry();
    layOut();
}

void ResultArea::layOut()
{
    const QRect inner = rect().adjusted(sideMargin, verticalMargin, -sideMargin, -verticalMargin);
    // The text keeps its width whatever is on show, so that its height is known
    // before it shows; what is beyond the area scrolls.
    m_text->setGeometry(inner);
    const bool scrolls = m_text->textHeight() > greatestTextHeight;
    m_text->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    m_error->setGeometry(inner);
    m_hint->setGeometry(inner);
    QRect spinner(QPoint(), m_spinner->size());
    spinner.moveCenter(inner.center());
    m_spinner->setGeometry(spinner);
}

} // namespace nivora
