#include "result_area.h"

#include "announcer.h"
#include "panel_button.h"
#include "result_content.h"
#include "spinner.h"
#include "symbol_label.h"
#include "windows/theme.h"
#include "windows/translation_panel_view.h"

#include "session/translation_view_model.h"
#include "stores/settings_store.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QResizeEvent>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int sideMargin = 14;
constexpr int verticalMargin = 10;
constexpr int contentWidth = TranslationPanelView::panelWidth - 2 * sideMargin;
constexpr int leastHeight = 24;
constexpr int greatestHeight = 320; // beyond this the content scrolls
constexpr int hintPixels = 15;
constexpr int messagePixels = 13;
constexpr int spinnerSide = 16;
constexpr int spinnerPadding = 6;
constexpr int wheelStep = 23; // a line
constexpr auto patienceForPanel = 100ms;

} // namespace

ResultArea::ResultArea(TranslationViewModel &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_scroll(new QScrollArea(this))
    , m_content(new ResultContent(session, contentWidth))
    , m_spinner(new Spinner(spinnerSide, this))
    , m_error(makeError())
    , m_hint(makeHint())
    , m_announcer(new Announcer(this))
{
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->verticalScrollBar()->setSingleStep(wheelStep);
    m_scroll->setWidget(m_content);
    for (QWidget *each : {m_scroll->viewport(), static_cast<QWidget *>(m_content)})
        each->setAutoFillBackground(false);
    m_spinner->setAccessibleName(tr("翻译中"));
    // The panel follows its content a moment later; a scroll bar in between would
    // flicker. On a small screen it stays behind.
    m_tight.setSingleShot(true);
    m_tight.setInterval(patienceForPanel);
    connect(&m_tight, &QTimer::timeout, m_scroll,
            [this] { m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded); });

    connect(m_content, &ResultContent::heightChanged, this, [this] {
        updateGeometry();
        layOut();
    });
    connect(m_content, &ResultContent::placeShown, this, [this](const QRect &place) {
        m_scroll->ensureVisible(place.center().x(), place.center().y(), 0, place.height());
    });
    using Session = TranslationViewModel;
    for (const auto signal : {&Session::translatedTextReplaced, &Session::phaseChanged,
                              &Session::modeChanged, &Session::sourceTextChanged})
        connect(&m_session, signal, this, &ResultArea::renderPhase);
    connect(&m_session, &Session::phaseChanged, this, &ResultArea::announce);
    connect(&m_session.settings().liveTranslate, &SettingNotifier::changed, this,
            &ResultArea::renderPhase);
    renderPhase();
}

QWidget *ResultArea::makeError()
{
    auto *error = new QWidget(this);
    auto *row = new QHBoxLayout(error);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    m_errorMessage = new QLabel(error);
    m_errorMessage->setWordWrap(true);
    m_errorMessage->setFont(textFont(messagePixels));
    m_errorMessage->setTextFormat(Qt::PlainText);
    auto *retry = new PanelButton(PanelButton::Look::Plain, error);
    retry->setText(tr("重试"));
    retry->setActive(true);
    connect(retry, &PanelButton::clicked, this, [this] { m_session.translateNow(); });
    row->addWidget(
        new SymbolLabel(u"exclamationmark.triangle.fill"_s, SymbolLabel::Tone::Warning, 16, error));
    row->addWidget(m_errorMessage, 1);
    row->addWidget(retry);
    return error;
}

QWidget *ResultArea::makeHint()
{
    auto *hint = new QWidget(this);
    auto *row = new QHBoxLayout(hint);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    auto *text = new NoteLabel(hintPixels, hint);
    text->setText(tr("输入文字，自动翻译。"));
    row->addWidget(
        new SymbolLabel(u"character.cursor.ibeam"_s, SymbolLabel::Tone::Secondary, 16, hint));
    row->addWidget(text, 1);
    return hint;
}

void ResultArea::reset()
{
    m_scroll->verticalScrollBar()->setValue(0);
}

bool ResultArea::focusText(Qt::FocusReason reason)
{
    if (showing() != Showing::Content)
        return false;
    m_content->focusTranslation(reason);
    return true;
}

ResultArea::Showing ResultArea::showing() const
{
    const bool hasText = !m_session.translatedText().isEmpty();
    switch (m_session.phase().kind) {
    case Phase::Kind::Error:
        return Showing::Error;
    case Phase::Kind::Loading:
        return hasText ? Showing::Content : Showing::Spinner;
    case Phase::Kind::Streaming:
    case Phase::Kind::Done:
        return Showing::Content;
    case Phase::Kind::Idle:
        break;
    }
    const bool invites = m_session.mode() != PanelMode::Selection &&
                         m_session.settings().liveTranslate.value() &&
                         m_session.sourceText().trimmed().isEmpty();
    if (!invites)
        return Showing::Nothing;
    return hasText ? Showing::Content : Showing::Hint;
}

void ResultArea::renderPhase()
{
    const Showing now = showing();
    if (now == Showing::Error)
        m_errorMessage->setText(m_session.phase().message);
    if (now != Showing::Content)
        reset();
    const bool comesUp = now == Showing::Content && m_scroll->isHidden();
    m_scroll->setVisible(now == Showing::Content);
    m_spinner->setVisible(now == Showing::Spinner);
    m_error->setVisible(now == Showing::Error);
    m_hint->setVisible(now == Showing::Hint);
    setVisible(now != Showing::Nothing);
    updateGeometry();
    layOut();
    if (comesUp)
        Q_EMIT contentShown();
}

void ResultArea::announce()
{
    switch (m_session.phase().kind) {
    case Phase::Kind::Done:
        return m_announcer->announce(m_session.translatedText());
    case Phase::Kind::Error:
        return m_announcer->announce(m_session.phase().message);
    case Phase::Kind::Idle:
    case Phase::Kind::Loading:
    case Phase::Kind::Streaming:
        return m_announcer->withdraw();
    }
}

// Without the room that the texts have around them, which lies in the margins.
int ResultArea::textHeight() const
{
    return m_content->height() - 2 * ResultContent::room.height();
}

int ResultArea::contentHeight() const
{
    switch (showing()) {
    case Showing::Nothing:
        return 0;
    case Showing::Hint:
        return m_hint->sizeHint().height();
    case Showing::Spinner:
        return spinnerSide + 2 * spinnerPadding;
    case Showing::Error:
        return std::max(m_error->layout()->heightForWidth(contentWidth), leastHeight);
    case Showing::Content:
        break;
    }
    return std::clamp(textHeight(), leastHeight, greatestHeight);
}

QSize ResultArea::sizeHint() const
{
    return {TranslationPanelView::panelWidth, contentHeight() + 2 * verticalMargin};
}

// On a small screen there is less room than the content would like.
QSize ResultArea::minimumSizeHint() const
{
    const int least =
        showing() == Showing::Content ? leastHeight + 2 * verticalMargin : sizeHint().height();
    return {0, least};
}

void ResultArea::resizeEvent(QResizeEvent *)
{
    layOut();
}

void ResultArea::layOut()
{
    const QRect inner = rect().adjusted(sideMargin, verticalMargin, -sideMargin, -verticalMargin);
    // The content keeps its width: the scroll bar lies in the margin.
    constexpr QSize room = ResultContent::room;
    m_scroll->setGeometry(
        inner.adjusted(-room.width(), -room.height(), sideMargin - 2, room.height()));
    if (textHeight() > greatestHeight) {
        m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    } else if (inner.height() >= textHeight()) {
        m_tight.stop();
        m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    } else if (!m_tight.isActive()) {
        m_tight.start();
    }
    m_error->setGeometry(inner);
    m_hint->setGeometry(inner);
    QRect spinner(QPoint(), m_spinner->size());
    spinner.moveCenter(inner.center());
    m_spinner->setGeometry(spinner);
}

} // namespace nivora
