#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QTextEdit>
#include <QTimer>

namespace nivora {

// Shows a text that grows at its end. Selectable, read-only.
//
// What arrives is laid out at most once a frame, and a paragraph is laid out in
// portions, so that a piece costs the same however much stands before it.
class StreamingTextView : public QTextEdit
{
    Q_OBJECT

public:
    explicit StreamingTextView(QWidget *parent = nullptr);

    void replaceText(const QString &text);
    void appendText(const QString &piece);

    // The whole text, as it was given.
    QString text() const;

    // Height of the text laid out in the present width, in logical pixels.
    int textHeight() const;

Q_SIGNALS:
    void textHeightChanged();

protected:
    QMimeData *createMimeDataFromSelection() const override;

private:
    void flush();
    void divideParagraph();

    QString m_pending; // given, but not laid out yet
    QTimer m_flushTimer;
    QElapsedTimer m_sinceFlush;
    int m_reportedHeight = 0;
};

} // namespace nivora
