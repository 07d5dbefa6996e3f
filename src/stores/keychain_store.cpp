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

std::optional<platform::SecretText> textOf(const std::optional<platform::SecretBytes> &bytes)
{
    if (!bytes)
        return std::nullopt;
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const platform::SecretText text(QString(utf8(**bytes)));
    if (utf8.hasError())
        return std::nullopt;
    return text;
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

std::optional<platform::SecretText> KeychainStore::read(const QString &account) const
{
    return textOf(m_secrets.read(service(), account).secret);
}

KeychainStore::Presence KeychainStore::presence(const QString &account) const
{
    const platform::SecretAnswer answer = m_secrets.read(service(), account);
    if (!answer.isKnown)
        return Presence::Unknown;
    const auto text = textOf(answer.secret);
    return text && !text->isEmpty() ? Presence::Stored : Presence::Absent;
}

platform::Task KeychainStore::watch(std::function<void()> answers) const
{
    return m_secrets.watch(std::move(answers));
}

void KeychainStore::write(const QString &account, const std::optional<platform::SecretText> &value)
{
    if (value && !value->isEmpty())
        m_secrets.write(service(), account, (**value).toUtf8());
    else
        m_secrets.remove(service(), account);
}

} // namespace nivora
