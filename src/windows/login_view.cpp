#include "login_view.h"

#include "symbol_label.h"
#include "windows/theme.h"

#include <QLabel>
#include <QVBoxLayout>

namespace nivora {

LoginView::LoginView(SignIn &signIn, QWidget *parent)
    : QWidget(parent)
{
    Q_UNUSED(signIn)
    auto *title = new QLabel(tr("登录 Nivora"), this);
    auto *column = new QVBoxLayout(this);
    column->addWidget(title);
}

} // namespace nivora
