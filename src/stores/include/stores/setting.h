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

// One preference: a value in memory that is read once and written through at each
// assignment. Whatever is assigned is stored; nothing is validated or clamped here.
template<typename Value>
class Setting : public SettingNotifier
{
public:
    using Read = std::function<Value()>;
    using Write = std::function<void(const Value &)>;

    Setting(Read read, Write write)
        : m_value(read())
        , m_read(std::move(read))
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

    // Takes over what was stored by somebody else.
    void refresh()
    {
        Value stored = m_read();
        if (stored == m_value)
            return;
        m_value = std::move(stored);
        Q_EMIT changed();
    }

private:
    Value m_value;
    Read m_read;
    Write m_write;
};

} // namespace nivora
