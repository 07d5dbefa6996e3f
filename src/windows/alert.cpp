#include "windows/alert.h"

#include "windows/theme.h"

#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int textPixels = 13;
constexpr int leastWidth = 340;

// Of the box's labels, by the names that the toolkit gives them.
void setLabelFont(const QMessageBox &box, const QString &name, const QFont &font)
{
    if (auto *label = box.findChild<QLabel *>(name))
        label->setFont(font);
}

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
        setLabelFont(m_box, u"qt_msgbox_label"_s, titleFont(textPixels));
        setLabelFont(m_box, u"qt_msgbox_informativelabel"_s, textFont(textPixels));
        // By itself it is as wide as the message, which breaks details into many lines.
        if (auto *grid = qobject_cast<QGridLayout *>(m_box.layout()))
            grid->addItem(new QSpacerItem(leastWidth, 0), grid->rowCount(), 0, 1,
                          grid->columnCount());
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
