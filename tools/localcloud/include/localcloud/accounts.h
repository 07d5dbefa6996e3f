#pragma once

#include "localcloud/request.h"

#include <QDateTime>
#include <QHash>
#include <QString>

namespace nivora::localcloud {

struct Account
{
    QString email;
    bool pro = false;
    qint64 used = 0; // characters translated in this period
    QDateTime periodEnd;

    qint64 quota() const { return pro ? 1'000'000 : 10'000; }
};

// Who may use the cloud, and how much of it they used; kept in memory alone.
class Accounts
{
public:
    // A new bearer token for the account of this address, which is made if there
    // is none.
    QByteArray issueToken(const QString &email);
    // The same with a given token.
    void addToken(const QByteArray &token, const QString &email);

    // The account whose token the request bears; null when it bears none of ours.
    Account *find(const Request &request);
    // The account of this address; null when there is none.
    Account *find(const QString &email);

private:
    QHash<QString, Account> m_accounts; // by address
    QHash<QByteArray, QString> m_tokens;
};

// The token of a request's Authorization header; empty when it bears none.
QByteArray bearerToken(const Request &request);

// So many random bytes as hexadecimal digits.
QByteArray randomDigits(int bytes);

} // namespace nivora::localcloud
