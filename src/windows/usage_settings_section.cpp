#include "usage_settings_section.h"

#include "date_text.h"
#include "panel_button.h"
#include "symbol_label.h"

#include "stores/usage_store.h"

#include <QHBoxLayout>
#include <QLocale>

namespace nivora {

namespace {

// Logical pixels.
constexpr int valuePixels = 13;
constexpr int notePixels = 11;

// Counters that were edited by hand may be any.
qint64 saturatedSum(qint64 one, qint64 other)
{
    qint64 sum = 0;
    if (__builtin_add_overflow(one, other, &sum))
        return one < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    return sum;
}

} // namespace

UsageSettingsSection::UsageSettingsSection(UsageStore &usage, QWidget *parent)
    : SettingsSection(tr("用量统计"), parent)
    , m_usage(usage)
    , m_requests(addValue(tr("翻译请求")))
    , m_input(addValue(tr("输入 tokens")))
    , m_output(addValue(tr("输出 tokens")))
    , m_total(addValue(tr("合计 tokens")))
{
    auto *content = new QWidget(this);
    m_since = new NoteLabel(notePixels, content);
    auto *reset = new PanelButton(PanelButton::Look::Secondary, content);
    reset->setText(tr("重置"));
    auto *line = new QHBoxLayout(content);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(m_since, 1);
    line->addWidget(reset);
    addBlock(content);
    connect(reset, &PanelButton::clicked, this, [this] { m_usage.reset(); });
    connect(&m_usage, &UsageStore::changed, this, &UsageSettingsSection::render);
    render();
}

NoteLabel *UsageSettingsSection::addValue(const QString &label)
{
    auto *value = new NoteLabel(valuePixels, this);
    addRow(label, value);
    // Read out with its value, not in place of it.
    value->setAccessibleName({});
    value->setAccessibleDescription(label);
    return value;
}

void UsageSettingsSection::render()
{
    const QLocale locale;
    m_requests->setText(
        tr("%1 次", "request count value").arg(locale.toString(m_usage.requestCount())));
    m_input->setText(locale.toString(m_usage.promptTokens()));
    m_output->setText(locale.toString(m_usage.completionTokens()));
    m_total->setText(
        locale.toString(saturatedSum(m_usage.promptTokens(), m_usage.completionTokens())));
    m_since->setText(tr("自 %1 起统计", "tracking since date")
                         .arg(mediumDate(m_usage.since().toLocalTime().date(), locale)));
}

} // namespace nivora
