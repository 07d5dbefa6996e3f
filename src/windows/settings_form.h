#pragma once

#include <QWidget>

class QVBoxLayout;

namespace nivora {

class SettingsSection;

// One tab of the settings: sections below each other.
class SettingsForm : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsForm(QWidget *parent);

protected:
    SettingsSection *addSection(const QString &title);
    void addSection(QWidget *section);

private:
    QVBoxLayout *m_column;
};

} // namespace nivora
