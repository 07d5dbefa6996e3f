#include "localcloud/account_service.h"

#include "localcloud/accounts.h"
#include "localcloud/router.h"
#include "pages.h"

#include <QJsonDocument>
#include <QRandomGenerator>
#include <QUrlQuery>

#include <algorithm>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int codeLifeSeconds = 600;
constexpr int maximumAttempts = 5;
constexpr int maximumMail = 100; // that is kept
constexpr int keyBytes = 16;
const auto googleEmail = u"walker@example.com"_s;

Answer refusal(int status, const QString &text)
{
    return Answer::json(status, {{u"error"_s, text}});
}

Answer signInFirst()
{
    return refusal(401, u"请先登录"_s);
}

QString textOf(const Request &request, const QString &key)
{
    return QJsonDocument::fromJson(request.body).object()[key].toString();
}

QByteArray keyOf(const Request &request)
{
    return QUrlQuery(QString::fromLatin1(request.query)).queryItemValue(u"key"_s).toLatin1();
}

Answer noSuchPage()
{
    return page(404, u"Gone"_s, u"<p>This page is over. Ask for a new one.</p>"_s);
}

} // namespace

AccountService::AccountService(Accounts &accounts, std::function<void(const Mail &)> onMail)
    : m_accounts(accounts)
    , m_onMail(std::move(onMail))
{
}

void AccountService::addRoutes(Router &router)
{
    router.add("POST", "/auth/email/start", [this](const auto &each) { return startEmail(each); });
    router.add("POST", "/auth/email/verify",
               [this](const auto &each) { return verifyEmail(each); });
    router.add("GET", "/auth/google/start", [](const auto &) {
        return page(200, u"Sign in with Google"_s,
                    button(u"Continue as "_s + googleEmail, u"/auth/google/finish"_s));
    });
    router.add("POST", "/auth/google/finish", [this](const auto &) { return finishGoogle(); });
    router.add("GET", "/billing/status", [this](const auto &each) { return status(each); });
    router.add("POST", "/billing/checkout",
               [this](const auto &each) { return invite(each, Page::Checkout); });
    router.add("POST", "/billing/portal",
               [this](const auto &each) { return invite(each, Page::Portal); });
    router.add("GET", "/billing/page", [this](const auto &each) { return planPage(each); });
    router.add("POST", "/billing/page", [this](const auto &each) { return changePlan(each); });
    router.add("GET", "/mail", [this](const auto &) { return mailPage(); });
}

Answer AccountService::startEmail(const Request &request)
{
    const QString email = textOf(request, u"email"_s);
    if (email.count(u'@') != 1 || email.startsWith(u'@') || email.endsWith(u'@'))
        return refusal(400, u"邮箱地址不正确"_s);
    const int code = QRandomGenerator::system()->bounded(1'000'000);
    m_mail.append({.email = email,
                   .language = textOf(request, u"lang"_s),
                   .code = u"%1"_s.arg(code, 6, 10, QLatin1Char('0')),
                   .sent = QDateTime::currentDateTimeUtc()});
    if (m_mail.size() > maximumMail)
        m_mail.removeFirst();
    if (m_onMail)
        m_onMail(m_mail.last());
    return Answer::json(200, {});
}

AccountService::Mail *AccountService::lastMailTo(const QString &email)
{
    const auto found = std::find_if(m_mail.rbegin(), m_mail.rend(),
                                    [&](const Mail &each) { return each.email == email; });
    return found == m_mail.rend() ? nullptr : &*found;
}

Answer AccountService::verifyEmail(const Request &request)
{
    const QString email = textOf(request, u"email"_s);
    Mail *mail = lastMailTo(email);
    const bool isOpen = mail && !mail->spent && ++mail->attempts <= maximumAttempts &&
                        mail->sent.secsTo(QDateTime::currentDateTimeUtc()) <= codeLifeSeconds;
    if (!isOpen)
        return refusal(400, u"验证码已失效，请重新获取"_s);
    if (textOf(request, u"code"_s) != mail->code)
        return refusal(400, u"验证码错误"_s);
    mail->spent = true;
    const QByteArray token = m_accounts.issueToken(email);
    return Answer::json(200, {{u"token"_s, QString::fromLatin1(token)}, {u"email"_s, email}});
}

Answer AccountService::finishGoogle()
{
    QUrlQuery query;
    query.addQueryItem(u"token"_s, QString::fromLatin1(m_accounts.issueToken(googleEmail)));
    query.addQueryItem(u"email"_s, googleEmail);
    QUrl link(u"nivora://signed-in"_s);
    link.setQuery(query);
    return Answer::redirect(link, 303);
}

Answer AccountService::status(const Request &request)
{
    const Account *account = m_accounts.find(request);
    if (!account)
        return signInFirst();
    return Answer::json(200, {{u"plan"_s, account->pro ? u"pro"_s : u"free"_s},
                              {u"status"_s, u"active"_s},
                              {u"used"_s, account->used},
                              {u"quota"_s, account->quota()},
                              {u"periodEnd"_s, account->periodEnd.toMSecsSinceEpoch()}});
}

Answer AccountService::invite(const Request &request, Page kind)
{
    const Account *account = m_accounts.find(request);
    if (!account)
        return signInFirst();
    const QByteArray key = randomDigits(keyBytes);
    m_visits.insert(key, {account->email, kind});
    const QByteArray url = "http://" + request.header("Host") + "/billing/page?key=" + key;
    return Answer::json(200, {{u"url"_s, QString::fromLatin1(url)}});
}

Answer AccountService::planPage(const Request &request)
{
    const auto visit = m_visits.constFind(keyOf(request));
    if (visit == m_visits.cend())
        return noSuchPage();
    const Account &account = *m_accounts.find(visit->email);
    const QString facts = u"<p>%1: %2, %3 of %4 characters</p>"_s.arg(
        account.email.toHtmlEscaped(), account.pro ? u"Pro"_s : u"free"_s,
        QString::number(account.used), QString::number(account.quota()));
    const bool buys = visit->page == Page::Checkout;
    const QString action = u"/billing/page?"_s + QString::fromLatin1(request.query);
    return page(200, buys ? u"Buy Pro"_s : u"Your plan"_s,
                facts + button(buys ? u"Buy"_s : u"Leave Pro"_s, action));
}

Answer AccountService::changePlan(const Request &request)
{
    if (!m_visits.contains(keyOf(request)))
        return noSuchPage();
    const Visit visit = m_visits.take(keyOf(request));
    m_accounts.find(visit.email)->pro = visit.page == Page::Checkout;
    return page(200, u"Done"_s, u"<p>You can close this page.</p>"_s);
}

Answer AccountService::mailPage() const
{
    QString rows;
    for (auto mail = m_mail.crbegin(); mail != m_mail.crend(); ++mail)
        rows += u"<tr><td>%1</td><td>%2</td><td>%3</td><td><b>%4</b></td></tr>\n"_s.arg(
            mail->sent.toString(Qt::ISODate), mail->email.toHtmlEscaped(),
            mail->language.toHtmlEscaped(), mail->code);
    return page(200, u"Outgoing mail"_s,
                u"<table><tr><th>Sent</th><th>To</th><th>Language</th><th>Code</th></tr>\n%1"
                "</table>"_s.arg(rows));
}

} // namespace nivora::localcloud
