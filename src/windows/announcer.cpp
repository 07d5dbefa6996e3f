#include "announcer.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace nivora {

namespace {

// Nobody wants to hear more unasked; the result itself can be read on.
constexpr int mostCharacters = 1000;

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *announcer = qobject_cast<Announcer *>(object);
    return announcer ? new QAccessibleWidget(announcer, QAccessible::Notification) : nullptr;
}

} // namespace

Announcer::Announcer(QWidget *parent)
    : QWidget(parent)
{
    QAccessible::installFactory(makeAccessible);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(0, 0, 1, 1);
    hide();
}

void Announcer::announce(const QString &text)
{
    if (!QAccessible::isActive())
        return;
    hide();
    setAccessibleName(text.left(mostCharacters));
    show();
}

void Announcer::withdraw()
{
    hide();
}

} // namespace nivora
