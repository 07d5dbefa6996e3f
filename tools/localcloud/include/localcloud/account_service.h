#pragma once

#include "localcloud/answer.h"
#include "localcloud/request.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

#include <functional>

namespace nivora::localcloud {

struct Account;
class Accounts;
class Router;

// The part of the cloud where users sign in and pay, with nobody to pay. No mail
// goes out: what would be mailed is shown on a page.
//
//   POST /auth/email/start      mails a code
//   POST /auth/email/verify     a token for address and code
//   GET  /auth/google/start     a page whose button leads to a nivora: link
//   GET  /billing/status        plan and usage; wants a bearer token
//   POST /billing/checkout      the address of a page to buy the plan on; likewise
//   POST /billing/portal        the address of a page to leave the plan on; likewise
//   GET  /mail                  a page with the mail that went out
//
// Errors for the user are {"error":"..."}.
class AccountService
{
public:
    struct Mail
    {
        QString email;
        QString language;
        QString code;
        QDateTime sent;
        int attempts = 0; // to guess the code
        bool spent = false;
    };

    // `onMail`, if any, hears of each mail. Borrows the accounts.
    explicit AccountService(Accounts &accounts, std::function<void(const Mail &)> onMail = {});

    // The router borrows the service.
    void addRoutes(Router &router);

    // The latest last.
    const QList<Mail> &outgoingMail() const { return m_mail; }

private:
    enum class Page { Checkout, Portal };
    struct Visit
    {
        QString email;
        Page page;
    };

    Answer startEmail(const Request &request);
    Answer verifyEmail(const Request &request);
    Answer finishGoogle();
    Answer status(const Request &request);
    Answer invite(const Request &request, Page page);
    Answer planPage(const Request &request);
    Answer changePlan(const Request &request);
    Answer mailPage() const;
    Mail *lastMailTo(const QString &email);

    Accounts &m_accounts;
    std::function<void(const Mail &)> m_onMail;
    QList<Mail> m_mail;
    QHash<QByteArray, Visit> m_visits; // by the key in a page's address
};

} // namespace nivora::localcloud
