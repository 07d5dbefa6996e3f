#pragma once

#include "stores/setting.h"

#include <QList>
#include <QString>
#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QSlider;

namespace nivora {

class ToggleSwitch;

// Controls that show a setting, follow it wherever it is changed, and write each
// change of the user's through at once. Each borrows its setting.

ToggleSwitch *makeToggle(Setting<bool> &setting, QWidget *parent);

struct Choice
{
    QString label;
    QString value;
};

// A value that is none of the choices shows as `fallback`, which is what the
// program then goes by, and stays until the user chooses.
QComboBox *makePicker(Setting<QString> &setting, const QList<Choice> &choices,
                      const QString &fallback, QWidget *parent);
// A picker as such.
QComboBox *makePicker(QWidget *parent);
// Shows the choice with this data, or the one with the other; tells nobody.
void showChoice(QComboBox &picker, const QVariant &value, const QVariant &fallback);

QLineEdit *makeField(Setting<QString> &setting, QWidget *parent);
QLineEdit *makeField(QWidget *parent);
// Writes the text there unless it is there already, so that the cursor stays.
void showText(QLineEdit &field, const QString &text);

// A slider over a number, and what the number is. A stored number beyond the range
// shows as the nearer end, while the readout tells it as it is.
class SettingsSlider : public QWidget
{
    Q_OBJECT

public:
    struct Range
    {
        double least, most;
        double step;       // of the keys
        double unit = 1;   // the finest that is written
        bool stops = true; // whatever moves it, it halts at whole steps only
    };

    // `readout` holds %1 for the number without its fraction; empty for none.
    SettingsSlider(Setting<double> &setting, const Range &range, const QString &readout,
                   QWidget *parent);

    QSlider *slider() const { return m_slider; }

private:
    int units(double value) const;
    void write(int units);
    void render();

    Setting<double> &m_setting;
    Range m_range;
    QString m_readout;
    QSlider *m_slider;
    QLabel *m_label = nullptr; // null without a readout
};

} // namespace nivora
