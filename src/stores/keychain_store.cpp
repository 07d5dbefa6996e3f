#include "stores/keychain_store.h"

#include "platform/secret_store.h"

#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

QString service()
{
    return u"app.nivora"_s;
}

} // namespace

QString KeychainStore::byoApiKeyAccount()
{
    return u"byo-api-key"_s;
}

QString KeychainStore::sessionTokenAccount()
{
    return u"session-token"_s;
}

std::optional<QString> KeychainStore::read(const QString &account) const
{
    const auto bytes = m_secrets.read(service(), account);
    if (!bytes)
        return std::nullopt;
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString value = utf8(*bytes);
    if (utf8.hasError())
        return std::nullopt;
    return value;
}

void KeychainStore::write(const QString &account, const std::optional<QString> &value)
{
    if (value && !value->isEmpty())
        m_secrets.write(service(), account, value->toUtf8());
    else
        m_secrets.remove(service(), account);
}

} // namespace nivora
