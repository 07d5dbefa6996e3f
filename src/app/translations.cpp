#include "app/translations.h"

#include "app/interface_language.h"

#include "platform/log.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

#include <clocale>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Qt names its catalogues of Chinese by country; its sources are in English.
QString ofQt(const QString &language)
{
    if (language == u"zh-Hans")
        return u"qtbase_zh_CN"_s;
    if (language == u"zh-Hant")
        return u"qtbase_zh_TW"_s;
    return language == u"en" ? QString() : u"qtbase_"_s + language;
}

} // namespace

Translations::Translations(const QString &language)
{
    // The system's QLocale may have the language of the texts and yet write dates in
    // another: it takes each from the variable of its own.
    const QLocale ofDates(QString::fromLatin1(std::setlocale(LC_TIME, nullptr)));
    QLocale::setDefault(interfaceLocale(language, ofDates));
    if (const QString catalogue = ofQt(language); !catalogue.isEmpty())
        install(catalogue, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    install(u"nivora_"_s + QString(language).replace(u'-', u'_'), u":/translations"_s);
}

void Translations::install(const QString &catalogue, const QString &folder)
{
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(catalogue + u".qm"_s, folder)) {
        qCInfo(log::app).noquote() << "No catalogue of texts:" << catalogue;
        return;
    }
    QCoreApplication::installTranslator(translator.get());
    m_translators.push_back(std::move(translator));
}

} // namespace nivora
