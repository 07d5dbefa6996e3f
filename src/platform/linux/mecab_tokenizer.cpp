#include "platform_linux/mecab_tokenizer.h"

#include "platform/log.h"

#include "mecab_library.h"
#include "mecab_words.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <mutex>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

using Model = MecabLibrary::Model;

// A tagger with its working memory.
struct Analyser
{
    MecabLibrary::Tagger tagger;
    MecabLibrary::Lattice lattice;
};

Model loadModel(const MecabLibrary &mecab, const QString &dictionary)
{
    QByteArray folder = QFile::encodeName(dictionary);
    // Separate arguments, since a folder's name may hold blanks.
    char name[] = "mecab", rc[] = "-r", noRc[] = "/dev/null", dic[] = "-d";
    char *arguments[] = {name, rc, noRc, dic, folder.data()};
    Model model(mecab.newModel(int(std::size(arguments)), arguments), {&mecab});
    if (model) {
        const QByteArrayView charset = mecab.dictionaryInfo(model.get())->charset;
        if (charset.compare("UTF-8", Qt::CaseInsensitive) != 0 &&
            charset.compare("UTF8", Qt::CaseInsensitive) != 0)
            return {};
    }
    return model;
}

// False when the analyser could not do it.
bool analyse(const MecabLibrary &mecab, const Analyser &analyser, QStringView portion,
             MecabWords &words)
{
    const QByteArray text = portion.toUtf8();
    mecab_lattice_t *lattice = analyser.lattice.get();
    mecab.setSentence(lattice, text.constData(), std::size_t(text.size()));
    if (!mecab.parse(analyser.tagger.get(), lattice))
        return false;
    const char *end = text.constData();
    for (const mecab_node_t *node = mecab.firstNode(lattice); node; node = node->next) {
        if (node->stat == MECAB_BOS_NODE || node->stat == MECAB_EOS_NODE)
            continue;
        // Blanks, tabs and line ends are no nodes.
        words.addBlanks(QString::fromUtf8(end, node->surface - end));
        words.addMorpheme(QString::fromUtf8(node->surface, node->length), node->feature);
        end = node->surface + node->length;
    }
    words.addBlanks(QString::fromUtf8(end, text.constEnd() - end));
    mecab.clear(lattice);
    return true;
}

} // namespace

struct MecabTokenizer::Parts
{
    bool load();
    Analyser borrow();
    void giveBack(Analyser analyser);

    QString dictionary;
    MecabLibrary mecab;
    std::mutex mutex; // of all below; held while the dictionary loads
    bool tried = false;
    Model model;
    std::vector<Analyser> idle;
};

bool MecabTokenizer::Parts::load()
{
    const std::lock_guard lock(mutex);
    if (!std::exchange(tried, true)) {
        if (!mecab.load())
            qCWarning(log::app).noquote() << "No MeCab:" << mecab.errorString();
        else
            model = loadModel(mecab, dictionary);
        if (!model)
            qCWarning(log::app, "No usable Japanese dictionary: there will be no readings");
    }
    return model != nullptr;
}

Analyser MecabTokenizer::Parts::borrow()
{
    const std::lock_guard lock(mutex);
    if (idle.empty())
        return {MecabLibrary::Tagger(mecab.newTagger(model.get()), {&mecab}),
                MecabLibrary::Lattice(mecab.newLattice(model.get()), {&mecab})};
    Analyser analyser = std::move(idle.back());
    idle.pop_back();
    return analyser;
}

void MecabTokenizer::Parts::giveBack(Analyser analyser)
{
    const std::lock_guard lock(mutex);
    idle.push_back(std::move(analyser));
}

QString MecabTokenizer::defaultDictionary()
{
    const QString folders[] = {
        u"/var/lib/mecab/dic/ipadic-utf8"_s, // Debian
        u"/usr/lib64/mecab/dic/ipadic"_s,    // Fedora
        u"/usr/lib/mecab/dic/ipadic"_s,      // Arch
        u"/usr/share/mecab/dic/ipadic"_s,
    };
    const auto found = std::ranges::find_if(
        folders, [](const QString &folder) { return QFileInfo::exists(folder + u"/sys.dic"_s); });
    return found == std::end(folders) ? folders[0] : *found;
}

MecabTokenizer::MecabTokenizer(const QString &dictionary)
    : m_parts(std::make_unique<Parts>())
{
    m_parts->dictionary = dictionary;
}

MecabTokenizer::~MecabTokenizer() = default;

bool MecabTokenizer::prepare()
{
    return m_parts->load();
}

std::optional<std::vector<platform::JapaneseToken>>
MecabTokenizer::tokenize(const QString &text, const std::function<bool()> &goesOn)
{
    if (!prepare())
        return std::nullopt;
    Analyser analyser = m_parts->borrow();
    MecabWords words;
    bool whole = true;
    for (qsizetype begin = 0; whole && begin < text.size();) {
        const qsizetype end = sentenceEnd(text, begin);
        whole = goesOn() && analyse(m_parts->mecab, analyser,
                                    QStringView(text).sliced(begin, end - begin), words);
        begin = end;
    }
    m_parts->giveBack(std::move(analyser));
    if (!whole)
        return std::nullopt;
    return words.take();
}

} // namespace nivora::linuxdesktop
