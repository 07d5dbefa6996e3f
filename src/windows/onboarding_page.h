#pragma once

#include <QWidget>

class QVBoxLayout;

namespace nivora {

class PanelButton;

// One step of the onboarding: a centred column with a title, and a main button for
// which Return stands.
class OnboardingPage : public QWidget
{
    Q_OBJECT

public:
    explicit OnboardingPage(QWidget *parent);

    // The step has begun: gives the keyboard to what the user needs first.
    virtual void begin();

Q_SIGNALS:
    void advanceRequested();

protected:
    QVBoxLayout &column() { return *m_column; }
    void addTitle(const QString &title);
    void addNote(const QString &note, int pixelSize);
    // A large button in the middle, not added yet.
    PanelButton *makeMainButton(const QString &text);
    // A sign of success with a word below it, and the button to go on.
    QWidget *makeSuccess(const QString &text, PanelButton *next);
    // What Return stands for; null for nothing.
    void setMainButton(PanelButton *button) { m_mainButton = button; }
    void keyPressEvent(QKeyEvent *event) override;

private:
    QVBoxLayout *m_column;
    PanelButton *m_mainButton = nullptr;
};

} // namespace nivora
