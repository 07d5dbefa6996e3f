#pragma once

#include <QTranslator>

#include <memory>
#include <vector>

namespace nivora {

// The interface's texts in one language, and Qt's own beside them, for as long as
// this object lives. Made after the application and before anything with a text.
class Translations
{
public:
    // "zh-Hans", "zh-Hant", "ja" or "en". A catalogue that is missing leaves the
    // texts as they are in the sources: ours in Chinese, Qt's in English.
    explicit Translations(const QString &language);

private:
    void install(const QString &catalogue, const QString &folder);

    std::vector<std::unique_ptr<QTranslator>> m_translators; // leave the application by themselves
};

} // namespace nivora
