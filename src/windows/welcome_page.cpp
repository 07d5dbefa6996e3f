#include "welcome_page.h"

#include "double_shift_hint.h"
#include "panel_button.h"
#include "windows/theme.h"

#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int bodyPixels = 14;
constexpr int captionPixels = 12;
constexpr int bodyMargin = 26; // to the left and to the right

} // namespace

WelcomePage::WelcomePage(QWidget *parent)
    : OnboardingPage(parent)
    , m_practice(this)
{
    //: Markdown
    const QString text = tr("选中任意文字，**双击 Shift**，立即翻译。读懂、写出、回填，一气呵成。");
    auto *body = new QLabel(text, this);
    body->setTextFormat(Qt::MarkdownText);
    body->setAccessibleName(QString(text).remove(u"**"_s));
    body->setFont(textFont(bodyPixels));
    body->setAlignment(Qt::AlignHCenter);
    body->setWordWrap(true);
    body->setContentsMargins(bodyMargin, 0, bodyMargin, 0);
    PanelButton *start = makeMainButton(tr("开始"));
    setMainButton(start);

    column().addWidget(new DoubleShiftHint(this), 0, Qt::AlignHCenter);
    column().addSpacing(14);
    addTitle(tr("欢迎使用 Nivora"));
    column().addSpacing(10);
    column().addWidget(body);
    column().addStretch();
    column().addWidget(start, 0, Qt::AlignHCenter);
    column().addSpacing(12);
    addNote(tr("现在就试试：双击 Shift 即可继续"), captionPixels);
    connect(start, &PanelButton::clicked, this, &OnboardingPage::advanceRequested);
    connect(&m_practice, &DoubleShiftPractice::completed, this, &OnboardingPage::advanceRequested);
}

void WelcomePage::showEvent(QShowEvent *event)
{
    OnboardingPage::showEvent(event);
    if (QWindow *host = window()->windowHandle())
        m_practice.installShiftMonitor(*host);
}

void WelcomePage::hideEvent(QHideEvent *event)
{
    m_practice.removeShiftMonitor();
    OnboardingPage::hideEvent(event);
}

} // namespace nivora
