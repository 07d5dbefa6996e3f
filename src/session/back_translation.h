#pragma once

#include "core/token_usage.h"

#include "platform/task.h"

#include <QObject>
#include <QString>

#include <functional>

namespace nivora {

class SettingsStore;
class TranslationEngine;

// A Japanese result translated back into Chinese, for a user who cannot read it
// to see what it says. Fails in silence: the main result is not disturbed.
class BackTranslation : public QObject
{
    Q_OBJECT

public:
    BackTranslation(TranslationEngine &engine, const SettingsStore &settings);

    QString text() const { return m_text; } // as far as it has arrived

    // Empties the line and asks the service a moment later, so that a run that
    // follows at once costs nothing.
    void start(const QString &japanese, std::function<void(const TokenUsage &)> onUsage);
    // Gives up what is under way, and leaves the line as it is.
    void stop();
    void clear();

Q_SIGNALS:
    void replaced();
    void appended(const QString &piece);

private:
    void request(const QString &japanese, const std::function<void(const TokenUsage &)> &onUsage);
    void append(const QString &piece);

    TranslationEngine &m_engine;
    const SettingsStore &m_settings;
    QString m_text;
    platform::Task m_task;
};

} // namespace nivora
