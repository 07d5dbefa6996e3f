#include "ready_page.h"

#include "key_badge.h"
#include "panel_button.h"
#include "symbol_label.h"
#include "windows/theme.h"

#include <QGridLayout>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int textPixels = 13;
constexpr int captionPixels = 12;
constexpr QMargins groupPadding(18, 18, 18, 18);
constexpr qreal groupRadius = 10;

// Holds together what belongs together.
class Group final : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(hairline(palette()));
        painter.setBrush(palette().color(QPalette::Base));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), groupRadius,
                                groupRadius);
    }
};

void addTrigger(QGridLayout &grid, int row, const QString &keys, const QString &text,
                QWidget *parent)
{
    auto *explanation = new QLabel(text, parent);
    explanation->setFont(textFont(textPixels));
    explanation->setWordWrap(true);
    grid.addWidget(new KeyBadge(keys, parent), row, 0);
    grid.addWidget(explanation, row, 1);
}

} // namespace

ReadyPage::ReadyPage(QWidget *parent)
    : OnboardingPage(parent)
{
    PanelButton *finish = makeMainButton(tr("完成"));
    setMainButton(finish);
    auto *group = new Group(this);
    auto *grid = new QGridLayout(group);
    grid->setContentsMargins(groupPadding);
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(14);
    grid->setColumnStretch(1, 1);
    addTrigger(*grid, 0, tr("双击 Shift"), tr("在选中文字 / 任意输入框唤起"), group);
    addTrigger(*grid, 1, tr("⌃⌥O"), tr("助记快捷键，效果相同"), group);

    column().addSpacing(16);
    addTitle(tr("准备就绪 🎉"));
    column().addStretch(2);
    column().addWidget(group);
    column().addStretch(2);
    addNote(tr("菜单栏的「N」里还有截图翻译与设置。"), captionPixels);
    column().addStretch(3);
    column().addWidget(finish, 0, Qt::AlignHCenter);
    connect(finish, &PanelButton::clicked, this, &ReadyPage::done);
}

} // namespace nivora
