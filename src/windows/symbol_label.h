#pragma once

#include <QLabel>
#include <QString>

class QTextLayout;

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

// A label in a tone of its own, whatever the theme becomes. Plain text; where it
// wraps, it breaks a word that is longer than a line.
class NoteLabel : public QLabel
{
    Q_OBJECT

public:
    enum class Tone { Secondary, Faint, Error };

    NoteLabel(int pixelSize, QWidget *parent, Tone tone = Tone::Secondary);

    int heightForWidth(int width) const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    qreal layOut(QTextLayout &layout, qreal width) const;
    QColor ink() const;

    Tone m_tone;
};

} // namespace nivora
