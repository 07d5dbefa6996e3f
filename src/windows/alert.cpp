#include "windows/alert.h"

#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

class AlertOperation final : public platform::Operation
{
public:
    AlertOperation(const AlertContents &contents, std::function<void(int)> chosen)
        : m_chosen(std::move(chosen))
    {
        m_box.setWindowTitle(u"Nivora"_s);
        m_box.setWindowRole(u"alert"_s);
        m_box.setAttribute(Qt::WA_QuitOnClose, false);
        // Or a card of ours that floats would hide it.
        m_box.setWindowFlag(Qt::WindowStaysOnTopHint);
        m_box.setText(contents.message);
        m_box.setInformativeText(contents.details);
        // One role for all keeps them in the order told.
        for (const QString &label : contents.buttons)
            m_buttons.append(m_box.addButton(label, QMessageBox::ActionRole));
        m_box.setDefaultButton(m_buttons.first());
        m_box.setEscapeButton(m_buttons.last());
        connect(&m_box, &QMessageBox::finished, this, [this] {
            const auto clicked = std::ranges::find(m_buttons, m_box.clickedButton());
            const auto index = std::min(clicked - m_buttons.begin(), m_buttons.size() - 1);
            finish([&] { m_chosen(int(index)); });
        });
        m_box.setModal(false);
        // Window managers give a new window the keyboard. A request of ours could
        // arrive late and take it from where the user has gone on meanwhile.
        m_box.show();
        m_box.raise();
    }

private:
    void stop() override { m_box.hide(); }

    QMessageBox m_box;
    QList<QPushButton *> m_buttons;
    std::function<void(int)> m_chosen;
};

} // namespace

platform::Task showAlert(const AlertContents &contents, std::function<void(int)> chosen)
{
    Q_ASSERT(!contents.buttons.isEmpty());
    return platform::Task(new AlertOperation(contents, std::move(chosen)));
}

} // namespace nivora
