#pragma once

#include <QLabel>

namespace nivora {

// The name of a key, drawn as one.
class KeyBadge : public QLabel
{
    Q_OBJECT

public:
    KeyBadge(const QString &keys, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace nivora
