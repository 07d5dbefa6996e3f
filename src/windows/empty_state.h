#pragma once

#include <QWidget>

class QLabel;

namespace nivora {

class NoteLabel;

// Says why there is nothing to see: a symbol, a title and a line of text.
class EmptyState : public QWidget
{
    Q_OBJECT

public:
    EmptyState(const QString &symbol, const QString &title, QWidget *parent = nullptr);

    void setDescription(const QString &text); // plain text

private:
    QLabel *m_title;
    NoteLabel *m_description;
};

} // namespace nivora
