#include "settings_binding.h"

#include "settings_section.h"
#include "symbol_label.h"
#include "toggle_switch.h"
#include "windows/theme.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int textPixels = 13;
constexpr int readoutPixels = 12;
constexpr int controlHeight = 28;
constexpr int pickerWidth = 176;
constexpr int sliderWidth = 150;
constexpr int sliderHeight = 24; // with a halo around the handle
constexpr int gap = 10;

// A wheel that scrolls the form must not change what happens to pass below it.
class WheelGuard : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *control, QEvent *event) override
    {
        if (event->type() != QEvent::Wheel)
            return QObject::eventFilter(control, event);
        event->ignore();
        return true;
    }
};

void guardFromWheel(QWidget &control)
{
    control.installEventFilter(new WheelGuard(&control));
    control.setFocusPolicy(Qt::StrongFocus);
}

} // namespace

ToggleSwitch *makeToggle(Setting<bool> &setting, QWidget *parent)
{
    auto *toggle = new ToggleSwitch(parent);
    const auto render = [toggle, &setting] { toggle->setChecked(setting.value()); };
    render();
    QObject::connect(&setting, &SettingNotifier::changed, toggle, render);
    // Not clicked(): assistive tools toggle without a click.
    QObject::connect(toggle, &ToggleSwitch::toggled, toggle, [&setting](bool isOn) {
        if (isOn != setting.value())
            setting.set(isOn);
    });
    return toggle;
}

QComboBox *makePicker(QWidget *parent)
{
    auto *picker = new QComboBox(parent);
    picker->setFont(textFont(textPixels));
    picker->setFixedHeight(controlHeight);
    picker->setFixedWidth(pickerWidth);
    guardFromWheel(*picker);
    return picker;
}

void showChoice(QComboBox &picker, const QVariant &value, const QVariant &fallback)
{
    const QSignalBlocker programmatic(&picker);
    const int place = picker.findData(value);
    picker.setCurrentIndex(place >= 0 ? place : picker.findData(fallback));
}

QComboBox *makePicker(Setting<QString> &setting, const QList<Choice> &choices,
                      const QString &fallback, QWidget *parent)
{
    auto *picker = makePicker(parent);
    for (const Choice &choice : choices)
        picker->addItem(choice.label, choice.value);
    const auto render = [picker, fallback, &setting] {
        showChoice(*picker, setting.value(), fallback);
    };
    render();
    QObject::connect(&setting, &SettingNotifier::changed, picker, render);
    QObject::connect(picker, &QComboBox::currentIndexChanged, picker,
                     [picker, &setting] { setting.set(picker->currentData().toString()); });
    return picker;
}

QLineEdit *makeField(QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setFont(textFont(textPixels));
    field->setFixedHeight(controlHeight);
    field->setTextMargins(3, 0, 3, 0);
    return field;
}

void showText(QLineEdit &field, const QString &text)
{
    if (field.text() != text)
        field.setText(text);
}

QLineEdit *makeField(Setting<QString> &setting, QWidget *parent)
{
    auto *field = makeField(parent);
    const auto render = [field, &setting] { showText(*field, setting.value()); };
    render();
    field->setCursorPosition(0);
    QObject::connect(&setting, &SettingNotifier::changed, field, render);
    // Assistive tools change the text, too, which is no edit to the toolkit.
    QObject::connect(field, &QLineEdit::textChanged, field, [&setting](const QString &text) {
        if (text != setting.value())
            setting.set(text);
    });
    return field;
}

SettingsSlider::SettingsSlider(Setting<double> &setting, const Range &range, const QString &readout,
                               QWidget *parent)
    : QWidget(parent)
    , m_setting(setting)
    , m_range(range)
    , m_readout(readout)
    , m_slider(new QSlider(Qt::Horizontal, this))
{
    m_slider->setRange(units(range.least), units(range.most));
    m_slider->setSingleStep(units(range.step));
    m_slider->setPageStep(5 * units(range.step));
    m_slider->setFixedSize(sliderWidth, sliderHeight);
    guardFromWheel(*m_slider);
    setFocusProxy(m_slider);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addWidget(m_slider);
    if (!readout.isEmpty()) {
        m_label = new NoteLabel(readoutPixels, this);
        m_label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        m_label->setMinimumWidth(m_label->fontMetrics().horizontalAdvance(
            readout.arg(QString::number(std::llround(range.most)))));
        row->addWidget(m_label);
    }
    render();
    connect(&m_setting, &SettingNotifier::changed, this, &SettingsSlider::render);
    connect(m_slider, &QSlider::valueChanged, this, &SettingsSlider::write);
}

int SettingsSlider::units(double value) const
{
    return int(std::lround(value / m_range.unit));
}

void SettingsSlider::write(int units)
{
    double value = units * m_range.unit;
    if (m_range.stops) {
        const double steps = std::round((value - m_range.least) / m_range.step);
        value = m_range.least + steps * m_range.step;
    }
    m_setting.set(value);
}

void SettingsSlider::render()
{
    const double value = m_setting.value();
    {
        const QSignalBlocker programmatic(m_slider);
        m_slider->setValue(units(std::clamp(value, m_range.least, m_range.most)));
    }
    if (!m_label)
        return;
    constexpr double furthest = 1e15; // beyond it a number tells nobody anything
    m_label->setText(
        m_readout.arg(QString::number(qint64(std::clamp(value, -furthest, furthest)))));
}

} // namespace nivora
