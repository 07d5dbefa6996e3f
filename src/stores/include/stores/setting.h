#pragma once

#include <QObject>

#include <functional>
#include <utility>

namespace nivora {

// The part of a setting that views connect to.
class SettingNotifier : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void changed();
};

// One preference: a value in memory that is written through at each assignment.
// Whatever is assigned is stored; nothing is validated or clamped here.
template<typename Value>
class Setting : public SettingNotifier
{
public:
    using Write = std::function<void(const Value &)>;

    Setting(Value initial, Write write)
        : m_value(std::move(initial))
        , m_write(std::move(write))
    {
    }

    const Value &value() const { return m_value; }

    void set(Value value)
    {
        m_value = std::move(value);
        Q_EMIT changed();
        m_write(m_value);
    }

private:
    Value m_value;
    Write m_write;
};

} // namespace nivora
