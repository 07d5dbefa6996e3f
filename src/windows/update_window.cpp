#include "windows/update_window.h"

#include "panel_button.h"
#include "spinner.h"
#include "symbol_label.h"
#include "windows/theme.h"

#include "updates/updater.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int windowWidth = 440;
constexpr int margin = 20;
constexpr int gap = 16;
constexpr int iconSide = 48;
constexpr int signSide = 14;
constexpr int signGap = 6;
constexpr int packageWidth = 260; // of its name
constexpr int spinnerSide = 20;
constexpr int headingPixels = 15;
constexpr int detailPixels = 13;

} // namespace

UpdateWindow::UpdateWindow(Updater &updater)
    : QWidget(nullptr, Qt::Dialog)
    , m_updater(updater)
    , m_heading(new QLabel(this))
    , m_details(new NoteLabel(detailPixels, this))
    , m_signed(
          new SymbolLabel(u"checkmark.circle.fill"_s, SymbolLabel::Tone::Success, signSide, this))
    , m_unsigned(new SymbolLabel(u"exclamationmark.triangle.fill"_s, SymbolLabel::Tone::Warning,
                                 signSide, this))
    , m_package(new NoteLabel(detailPixels, this))
    , m_spinner(new Spinner(spinnerSide, this))
    , m_history(new PanelButton(PanelButton::Look::Plain, this))
    , m_skip(new PanelButton(PanelButton::Look::Plain, this))
    , m_later(new PanelButton(PanelButton::Look::Plain, this))
    , m_open(new PanelButton(PanelButton::Look::Prominent, this))
    , m_again(new PanelButton(PanelButton::Look::Plain, this))
    , m_close(new PanelButton(PanelButton::Look::Prominent, this))
{
    setWindowTitle(tr("软件更新"));
    setWindowRole(u"update"_s);
    setAttribute(Qt::WA_QuitOnClose, false);

    QFont font = textFont(headingPixels);
    font.setWeight(QFont::DemiBold);
    m_heading->setFont(font);
    for (QLabel *label :
         {m_heading, static_cast<QLabel *>(m_details), static_cast<QLabel *>(m_package)}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    }
    auto *icon = new QLabel(this);
    icon->setPixmap(
        QApplication::windowIcon().pixmap(QSize(iconSide, iconSide), devicePixelRatioF()));

    auto *package = new QHBoxLayout;
    package->setSpacing(signGap);
    package->addWidget(m_signed);
    package->addWidget(m_unsigned);
    package->addWidget(m_package, 1);
    auto *words = new QVBoxLayout;
    words->setSpacing(6);
    words->addWidget(m_heading);
    words->addWidget(m_details);
    words->addLayout(package);
    words->addWidget(m_spinner);
    words->addStretch();
    auto *top = new QHBoxLayout;
    top->setSpacing(gap);
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addLayout(words);
    top->addStretch(1); // the buttons may be wider

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    buttons->addWidget(m_history);
    buttons->addStretch();
    for (PanelButton *button : {m_skip, m_later, m_again, m_open, m_close})
        buttons->addWidget(button);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(gap);
    column->addLayout(top);
    column->addLayout(buttons);
    column->setSizeConstraint(QLayout::SetFixedSize);
    top->addStrut(iconSide);
    constexpr int wordsWidth = windowWidth - 2 * margin - iconSide - gap;
    m_heading->setFixedWidth(wordsWidth);
    m_details->setFixedWidth(wordsWidth);
    m_package->setFixedWidth(wordsWidth - signSide - signGap);

    m_history->setText(tr("版本历史"));
    m_skip->setText(tr("跳过此版本"));
    m_later->setText(tr("以后提醒"));
    m_open->setText(tr("打开下载页"));
    m_again->setText(tr("重试"));
    connect(m_history, &PanelButton::clicked, &m_updater, &Updater::showVersionHistory);
    connect(m_skip, &PanelButton::clicked, &m_updater, &Updater::skip);
    connect(m_later, &PanelButton::clicked, &m_updater, &Updater::dismiss);
    connect(m_open, &PanelButton::clicked, &m_updater, &Updater::openPage);
    connect(m_again, &PanelButton::clicked, &m_updater, &Updater::checkForUpdates);
    connect(m_close, &PanelButton::clicked, &m_updater, &Updater::dismiss);
    connect(&m_updater, &Updater::changed, this, &UpdateWindow::follow);
    connect(&m_updater, &Updater::presented, this, &UpdateWindow::present);
    follow();
}

void UpdateWindow::present(bool userInitiated)
{
    setAttribute(Qt::WA_ShowWithoutActivating, !userInitiated);
    show();
    if (!userInitiated)
        return;
    raise();
    activateWindow();
}

void UpdateWindow::bringToFront()
{
    if (!isVisible())
        return;
    raise();
    QApplication::alert(this); // where the window manager lets nothing to the front
}

void UpdateWindow::follow()
{
    using Phase = Updater::Phase;
    const Phase phase = m_updater.phase();
    if (phase == Phase::Quiet)
        return hide();
    const bool found = phase == Phase::Found;
    const auto &release = m_updater.release();
    const bool hasPackage = found && release->package;
    m_heading->setText(heading());
    m_details->setText(details());
    m_details->setVisible(phase != Phase::Checking);
    m_package->setText(package());
    m_package->setVisible(hasPackage);
    m_signed->setVisible(hasPackage && release->package->isSigned);
    m_unsigned->setVisible(hasPackage && !release->package->isSigned);
    m_spinner->setVisible(phase == Phase::Checking);
    m_history->setVisible(m_updater.offersVersionHistory() && (found || phase == Phase::UpToDate));
    m_skip->setVisible(found);
    m_later->setVisible(found);
    m_open->setVisible(found && !m_updater.page().isEmpty());
    m_again->setVisible(phase == Phase::Failed);
    m_close->setVisible(!found);
    m_close->setText(phase == Phase::Checking ? tr("取消") : tr("好"));
    // A press of Return does what leaves things as they are, or shows them.
    (found && !m_open->isHidden() ? m_open : found ? m_later : m_close)->setFocus();
}

QString UpdateWindow::heading() const
{
    switch (m_updater.phase()) {
    case Updater::Phase::Checking:
        return tr("正在检查更新…");
    case Updater::Phase::Found:
        return tr("有新版本：Nivora %1").arg(m_updater.release()->version);
    case Updater::Phase::UpToDate:
        return tr("已是最新版本");
    case Updater::Phase::Failed:
        return tr("无法检查更新");
    case Updater::Phase::NoBrowser:
        return tr("没有找到浏览器");
    case Updater::Phase::Quiet:
        break;
    }
    return {};
}

QString UpdateWindow::details() const
{
    switch (m_updater.phase()) {
    case Updater::Phase::Found:
        return tr("你正在使用 %1。").arg(m_updater.programVersion());
    case Updater::Phase::UpToDate:
        return tr("没有比 Nivora %1 更新的版本。").arg(m_updater.programVersion());
    case Updater::Phase::Failed:
        return m_updater.error();
    case Updater::Phase::NoBrowser:
        return tr("新版本在 %1").arg(m_updater.page().toDisplayString());
    case Updater::Phase::Checking:
    case Updater::Phase::Quiet:
        break;
    }
    return {};
}

QString UpdateWindow::package() const
{
    const auto &release = m_updater.release();
    if (!release || !release->package)
        return {};
    const QString name = m_package->fontMetrics().elidedText(release->package->url.fileName(),
                                                             Qt::ElideMiddle, packageWidth);
    return release->package->isSigned ? tr("软件包 %1 附有签名，安装前请核对。").arg(name)
                                      : tr("软件包 %1 没有签名。").arg(name);
}

void UpdateWindow::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    m_updater.dismiss();
}

void UpdateWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close))
        m_updater.dismiss();
    else
        QWidget::keyPressEvent(event);
}

} // namespace nivora
