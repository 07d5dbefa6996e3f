#pragma once

#include "platform/task.h"

#include <QObject>
#include <QStringList>

namespace nivora {

class SettingsStore;
class TranslationEngine;

// Other ways to say the same in Japanese. Fails in silence: the list stays empty.
class VariantList : public QObject
{
    Q_OBJECT

public:
    VariantList(TranslationEngine &engine, const SettingsStore &settings);

    QStringList texts() const { return m_texts; }
    bool isLoading() const { return m_isLoading; }

    void load(const QString &source);
    // Gives up what is under way.
    void clear();

Q_SIGNALS:
    void textsChanged();
    void isLoadingChanged();

private:
    void setTexts(const QStringList &texts);
    void setLoading(bool isLoading);

    TranslationEngine &m_engine;
    const SettingsStore &m_settings;
    QStringList m_texts;
    bool m_isLoading = false;
    platform::Task m_task;
};

} // namespace nivora
