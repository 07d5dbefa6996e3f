#include "localcloud/accounts.h"

#include <QRandomGenerator>

namespace nivora::localcloud {

namespace {

constexpr int tokenBytes = 32;

QDateTime startOfNextMonth()
{
    const QDate today = QDateTime::currentDateTimeUtc().date();
    return QDate(today.year(), today.month(), 1).addMonths(1).startOfDay(Qt::UTC);
}

} // namespace

QByteArray bearerToken(const Request &request)
{
    const QByteArray value = request.header("Authorization");
    return value.startsWith("Bearer ") ? value.sliced(7).trimmed() : QByteArray();
}

QByteArray randomDigits(int bytes)
{
    QByteArray random;
    for (int i = 0; i < bytes; ++i)
        random += char(QRandomGenerator::system()->bounded(256));
    return random.toHex();
}

QByteArray Accounts::issueToken(const QString &email)
{
    const QByteArray token = randomDigits(tokenBytes);
    addToken(token, email);
    return token;
}

void Accounts::addToken(const QByteArray &token, const QString &email)
{
    if (!m_accounts.contains(email))
        m_accounts.insert(email, Account{.email = email, .periodEnd = startOfNextMonth()});
    m_tokens.insert(token, email);
}

Account *Accounts::find(const Request &request)
{
    const auto email = m_tokens.constFind(bearerToken(request));
    return email == m_tokens.cend() ? nullptr : find(*email);
}

Account *Accounts::find(const QString &email)
{
    const auto account = m_accounts.find(email);
    return account == m_accounts.end() ? nullptr : &*account;
}

} // namespace nivora::localcloud
