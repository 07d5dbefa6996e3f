#pragma once

#include <QWidget>

class QLabel;

namespace nivora {

class NoteLabel;
class SettingsCard;

// A part of a form: a heading above a card with one row for each control.
class SettingsSection : public QWidget
{
    Q_OBJECT

public:
    SettingsSection(const QString &title, QWidget *parent);

    // Each gives the row, for hiding it.

    // A control at the right with its label at the left. Assistive tools call
    // `named`, or else the control, by the label.
    QWidget *addRow(const QString &label, QWidget *control, QWidget *named = nullptr);
    // Something across the whole width.
    QWidget *addBlock(QWidget *content);
    // The same without any margin.
    QWidget *addFlush(QWidget *content);
    // Small print that belongs to the row above.
    QWidget *addCaption(const QString &text);
    QWidget *addNote(NoteLabel *note);
    // Something that belongs to the row above.
    QWidget *addSubRow(QWidget *content);

    // A label as rows have it.
    static QLabel *makeLabel(const QString &text, QWidget *parent);
    // What a screen reader calls the control.
    static void setName(QWidget &control, const QString &name);

private:
    SettingsCard *m_card;
};

} // namespace nivora
