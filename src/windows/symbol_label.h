#pragma once

#include <QLabel>
#include <QString>

namespace nivora {

// A symbol on its own, in the palette's secondary or warning colour.
class SymbolLabel : public QWidget
{
    Q_OBJECT

public:
    enum class Tone { Secondary, Warning };

    SymbolLabel(const QString &name, Tone tone, int side, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_name;
    Tone m_tone;
};

// A label in the palette's secondary colour, whatever the theme becomes.
class NoteLabel : public QLabel
{
    Q_OBJECT

public:
    explicit NoteLabel(int pixelSize, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace nivora
