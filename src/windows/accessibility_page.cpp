#include "accessibility_page.h"

#include "panel_button.h"
#include "spinner.h"
#include "symbol_label.h"

#include "platform/accessibility.h"

#include <QVBoxLayout>

using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto pollPeriod = 1000ms;

// Logical pixels.
constexpr int subtitlePixels = 13;
constexpr int notePixels = 12;
constexpr int spinnerSide = 14;

} // namespace

AccessibilityPage::AccessibilityPage(const platform::Accessibility &accessibility, QWidget *parent)
    : OnboardingPage(parent)
    , m_accessibility(accessibility)
    , m_missing(makeMissing())
    , m_next(makeMainButton(tr("继续")))
    , m_trusted(makeSuccess(tr("已授权"), m_next))
{
    column().addSpacing(16);
    addTitle(tr("开启辅助功能"));
    column().addSpacing(8);
    addNote(tr("Nivora 需要它来读取选中的文字、模拟粘贴回填。"), subtitlePixels);
    column().addWidget(m_missing, 1);
    column().addWidget(m_trusted, 1);
    render(false);
}

QWidget *AccessibilityPage::makeMissing()
{
    m_open = makeMainButton(tr("打开系统设置授权…"));
    auto *content = new QWidget(this);
    auto *note = new NoteLabel(notePixels, content);
    note->setText(tr("授权后会自动继续"));
    auto *later = new PanelButton(PanelButton::Look::Plain, content);
    later->setText(tr("稍后再说"));
    auto *waiting = new QHBoxLayout;
    waiting->setSpacing(8);
    waiting->addStretch();
    waiting->addWidget(new Spinner(spinnerSide, content));
    waiting->addWidget(note);
    waiting->addStretch();
    auto *stack = new QVBoxLayout(content);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    stack->addStretch();
    stack->addWidget(m_open, 0, Qt::AlignHCenter);
    stack->addSpacing(16);
    stack->addLayout(waiting);
    stack->addStretch();
    stack->addWidget(later, 0, Qt::AlignHCenter);
    connect(m_open, &PanelButton::clicked, this, &AccessibilityPage::accessibilityRequested);
    connect(later, &PanelButton::clicked, this, &OnboardingPage::advanceRequested);
    return content;
}

void AccessibilityPage::begin()
{
    render(m_accessibility.isTrusted());
    m_poll.start(int(pollPeriod.count()), this);
    OnboardingPage::begin();
}

void AccessibilityPage::render(bool trusted)
{
    PanelButton *main = trusted ? m_next : m_open;
    if (m_missing->isHidden() != trusted && isAncestorOf(window()->focusWidget()))
        setFocus(); // or it would go on to a control outside
    m_missing->setVisible(!trusted);
    m_trusted->setVisible(trusted);
    setMainButton(main);
    if (window()->focusWidget() == this)
        main->setFocus();
}

void AccessibilityPage::timerEvent(QTimerEvent *)
{
    const bool trusted = m_accessibility.isTrusted();
    render(trusted);
    if (trusted)
        Q_EMIT advanceRequested();
}

void AccessibilityPage::hideEvent(QHideEvent *event)
{
    m_poll.stop();
    OnboardingPage::hideEvent(event);
}

} // namespace nivora
