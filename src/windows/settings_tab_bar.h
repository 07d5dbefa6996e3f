#pragma once

#include <QStringList>
#include <QTabBar>

namespace nivora {

// The tabs of the settings: a symbol above each label, in the middle of the bar.
class SettingsTabBar : public QTabBar
{
    Q_OBJECT

public:
    explicit SettingsTabBar(QWidget *parent);

    void add(const QString &label, const QString &symbol);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    QStringList m_symbols;
    int m_hovered = -1;
    bool m_ring = false; // came here by the keyboard
};

} // namespace nivora
