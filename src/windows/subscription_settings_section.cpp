#include "subscription_settings_section.h"

#include "date_text.h"
#include "panel_button.h"
#include "symbol_label.h"
#include "windows/theme.h"

#include "account/billing_store.h"
#include "account/billing_summary.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QShowEvent>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int planPixels = 15;
constexpr int notePixels = 11;
constexpr int gap = 8;
constexpr int barHeight = 8;

constexpr int barParts = 1000; // the whole bar

// A server may answer anything.
constexpr qsizetype mostOfError = 240;

} // namespace

SubscriptionSettingsSection::SubscriptionSettingsSection(BillingStore &billing, QWidget *parent)
    : SettingsSection(tr("订阅"), parent)
    , m_billing(billing)
{
    m_planRow = addBlock(makePlan());
    m_nothing = makeLabel({}, this);
    m_nothingRow = addBlock(m_nothing);
    addBlock(makeButtons());
    m_error = new NoteLabel(notePixels, this, NoteLabel::Tone::Error);
    m_errorRow = addNote(m_error);
    connect(&m_billing, &BillingStore::changed, this, &SubscriptionSettingsSection::render);
    render();
}

QWidget *SubscriptionSettingsSection::makePlan()
{
    auto *content = new QWidget(this);
    m_plan = new QLabel(content);
    m_plan->setFont(titleFont(planPixels));
    m_plan->setTextFormat(Qt::PlainText);
    m_figures = new NoteLabel(notePixels, content);
    m_share = new QProgressBar(content);
    m_share->setRange(0, barParts);
    m_share->setTextVisible(false);
    m_share->setFixedHeight(barHeight);
    setName(*m_share, tr("用量统计"));
    m_reset = new NoteLabel(notePixels, content);

    auto *head = new QHBoxLayout;
    head->addWidget(m_plan);
    head->addStretch();
    head->addWidget(m_figures);
    auto *column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    column->addLayout(head);
    column->addWidget(m_share);
    column->addWidget(m_reset);
    return content;
}

QWidget *SubscriptionSettingsSection::makeButtons()
{
    auto *content = new QWidget(this);
    m_page = new PanelButton(PanelButton::Look::Prominent, content);
    m_refresh = new PanelButton(PanelButton::Look::Secondary, content);
    m_refresh->setText(tr("刷新"));
    auto *line = new QHBoxLayout(content);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(gap);
    line->addWidget(m_page);
    line->addWidget(m_refresh);
    line->addStretch();
    connect(m_page, &PanelButton::clicked, this, [this] {
        const auto &status = m_billing.status();
        status && status->isPro() ? m_billing.openPortal() : m_billing.openCheckout();
    });
    connect(m_refresh, &PanelButton::clicked, this, [this] { m_billing.refresh(); });
    return content;
}

void SubscriptionSettingsSection::render()
{
    const auto &status = m_billing.status();
    const bool isLoading = m_billing.isLoading();
    m_planRow->setVisible(status.has_value());
    m_page->setVisible(status.has_value());
    m_nothingRow->setVisible(!status);
    m_nothing->setText(isLoading ? tr("加载中…") : tr("暂无订阅信息"));
    m_refresh->setEnabled(!status || !isLoading);
    const QString error = m_billing.errorText();
    m_error->setText(error.first(std::min(error.size(), mostOfError)));
    m_errorRow->setVisible(!error.isEmpty());
    if (!status)
        return;

    const QLocale locale;
    m_plan->setText(planLabel(*status));
    m_figures->setText(locale.toString(status->used) + u" / "_s + locale.toString(status->quota));
    const double share = status->quota < 1 ? 0 : double(status->used) / double(status->quota);
    m_share->setValue(int(std::clamp(share, 0.0, 1.0) * barParts));
    m_reset->setVisible(status->periodEnd.has_value());
    if (status->periodEnd) {
        const QDate day = QDateTime::fromMSecsSinceEpoch(*status->periodEnd).date();
        m_reset->setText(
            tr("本期于 %1 重置", "billing period reset date").arg(mediumDate(day, locale)));
    }
    m_page->setText(status->isPro() ? tr("管理订阅") : tr("升级到 Pro"));
    m_page->updateGeometry();
}

void SubscriptionSettingsSection::showEvent(QShowEvent *event)
{
    SettingsSection::showEvent(event);
    if (!event->spontaneous())
        m_billing.refresh();
}

} // namespace nivora
