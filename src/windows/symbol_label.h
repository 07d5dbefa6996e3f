#pragma once

#include <QLabel>
#include <QString>

namespace nivora {

// A symbol on its own.
class SymbolLabel : public QWidget
{
    Q_OBJECT

public:
    enum class Tone { Secondary, Faint, Warning, Success };

    SymbolLabel(const QString &name, Tone tone, int side, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_name;
    Tone m_tone;
};

// A label of lesser weight, whatever the theme becomes.
class NoteLabel : public QLabel
{
    Q_OBJECT

public:
    enum class Tone { Secondary, Faint };

    NoteLabel(int pixelSize, QWidget *parent, Tone tone = Tone::Secondary);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Tone m_tone;
};

} // namespace nivora
