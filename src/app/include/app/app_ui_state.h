#pragma once

#include <QObject>

namespace nivora {

// What the menu shows of the program as a whole.
class AppUIState : public QObject
{
    Q_OBJECT

public:
    // Whether other programs' elements can be read.
    bool accessibilityTrusted() const { return m_trusted; }

    void setAccessibilityTrusted(bool trusted)
    {
        if (m_trusted == trusted)
            return;
        m_trusted = trusted;
        Q_EMIT accessibilityTrustedChanged();
    }

Q_SIGNALS:
    void accessibilityTrustedChanged();

private:
    bool m_trusted = false;
};

} // namespace nivora
