#pragma once

#include <QWidget>

namespace nivora {

// Speaks to the users of a screen reader without taking the focus from where it
// is: a notification that assistive tools see come up. It shows nothing.
class Announcer : public QWidget
{
    Q_OBJECT

public:
    explicit Announcer(QWidget *parent);

    void announce(const QString &text);
    void withdraw();
};

} // namespace nivora
