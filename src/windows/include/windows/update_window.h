#pragma once

#include <QWidget>

class QLabel;

namespace nivora {

class NoteLabel;
class PanelButton;
class Spinner;
class SymbolLabel;
class Updater;

// Tells of a newer release, or what came of a check that the user asked for.
// Follows the updater; closing it leaves the release for another day.
class UpdateWindow : public QWidget
{
    Q_OBJECT

public:
    explicit UpdateWindow(Updater &updater); // outlives the window

    // Lays the window before the others, where it is open; the keyboard stays
    // where it is.
    void bringToFront();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void present(bool userInitiated);
    void follow();
    QString heading() const;
    QString details() const;
    QString package() const;

    Updater &m_updater;
    QLabel *m_heading;
    NoteLabel *m_details;
    SymbolLabel *m_signed;
    SymbolLabel *m_unsigned;
    NoteLabel *m_package;
    Spinner *m_spinner;
    PanelButton *m_history;
    PanelButton *m_skip;
    PanelButton *m_later;
    PanelButton *m_open;
    PanelButton *m_again;
    PanelButton *m_close;
};

} // namespace nivora
