#pragma once

#include "platform/task.h"

#include <QObject>
#include <QString>

namespace nivora {

class ReadingService;
class SettingsStore;

// How the Japanese of a translation is read, in the form that the user chose.
class ReadingLine : public QObject
{
    Q_OBJECT

public:
    ReadingLine(ReadingService &readings, const SettingsStore &settings);

    QString text() const { return m_text; }

    // A reading is likely to be asked for soon.
    void prepare();
    // Takes the old reading away; the new one follows, unless readings are off.
    void show(const QString &japanese);
    // Gives up a reading under way, and leaves the line as it is.
    void stop();
    void clear();

Q_SIGNALS:
    void textChanged();

private:
    void setText(const QString &text);

    ReadingService &m_readings;
    const SettingsStore &m_settings;
    QString m_text;
    platform::Task m_task;
};

} // namespace nivora
