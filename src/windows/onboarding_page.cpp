#include "onboarding_page.h"

#include "panel_button.h"
#include "symbol_label.h"
#include "windows/theme.h"

#include <QKeyEvent>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int titlePixels = 22;
constexpr int successPixels = 14;
constexpr int successSide = 40;
constexpr int mainButtonWidth = 168;

} // namespace

OnboardingPage::OnboardingPage(QWidget *parent)
    : QWidget(parent)
    , m_column(new QVBoxLayout(this))
{
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
}

void OnboardingPage::begin()
{
    if (m_mainButton)
        m_mainButton->setFocus();
    else
        setFocus();
}

void OnboardingPage::addTitle(const QString &text)
{
    auto *title = new QLabel(text, this);
    title->setFont(titleFont(titlePixels));
    title->setAlignment(Qt::AlignHCenter);
    title->setWordWrap(true);
    m_column->addWidget(title);
}

void OnboardingPage::addNote(const QString &text, int pixelSize)
{
    auto *note = new NoteLabel(pixelSize, this);
    note->setText(text);
    note->setAlignment(Qt::AlignHCenter);
    note->setWordWrap(true);
    m_column->addWidget(note);
}

PanelButton *OnboardingPage::makeMainButton(const QString &text)
{
    auto *button = new PanelButton(PanelButton::Look::Prominent, this);
    button->setLarge();
    button->setText(text);
    button->setMinimumWidth(std::max(mainButtonWidth, button->sizeHint().width()));
    return button;
}

QWidget *OnboardingPage::makeSuccess(const QString &text, PanelButton *next)
{
    auto *success = new QWidget(this);
    auto *sign = new SymbolLabel(u"checkmark.circle.fill"_s, SymbolLabel::Tone::Success,
                                 successSide, success);
    auto *word = new QLabel(text, success);
    word->setFont(textFont(successPixels));
    auto *stack = new QVBoxLayout(success);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    stack->addStretch();
    stack->addWidget(sign, 0, Qt::AlignHCenter);
    stack->addSpacing(10);
    stack->addWidget(word, 0, Qt::AlignHCenter);
    stack->addStretch();
    stack->addWidget(next, 0, Qt::AlignHCenter);
    connect(next, &PanelButton::clicked, this, &OnboardingPage::advanceRequested);
    return success;
}

void OnboardingPage::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && m_mainButton && m_mainButton->isVisible())
        m_mainButton->click();
    else
        QWidget::keyPressEvent(event);
}

} // namespace nivora
