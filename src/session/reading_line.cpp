#include "reading_line.h"

#include "core/reading_service.h"
#include "stores/settings_store.h"

#include <optional>

namespace nivora {

namespace {

// Absent when readings are off.
std::optional<ReadingForm> formOf(const QString &style)
{
    if (style == u"off")
        return std::nullopt;
    return style == u"romaji" ? ReadingForm::Romaji : ReadingForm::Hiragana;
}

} // namespace

ReadingLine::ReadingLine(ReadingService &readings, const SettingsStore &settings)
    : m_readings(readings)
    , m_settings(settings)
{
}

void ReadingLine::prepare()
{
    if (formOf(m_settings.readingStyleRaw.value()))
        m_readings.prepare();
}

void ReadingLine::show(const QString &japanese)
{
    clear();
    if (const auto form = formOf(m_settings.readingStyleRaw.value())) {
        m_task =
            m_readings.read(japanese, *form, [this](const QString &reading) { setText(reading); });
    }
}

void ReadingLine::stop()
{
    m_task.cancel();
}

void ReadingLine::clear()
{
    stop();
    setText({});
}

void ReadingLine::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    Q_EMIT textChanged();
}

} // namespace nivora
