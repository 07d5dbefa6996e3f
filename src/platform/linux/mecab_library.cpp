#include "mecab_library.h"

namespace nivora::linuxdesktop {

namespace {

constexpr int interfaceVersion = 2;

} // namespace

MecabLibrary::MecabLibrary()
    : m_library(QStringLiteral("mecab"), interfaceVersion)
{
    // A reading on another thread may outlive whoever asked for it.
    m_library.setLoadHints(QLibrary::PreventUnloadHint);
}

bool MecabLibrary::load()
{
    const auto find = [this](auto &function, const char *name) {
        function =
            reinterpret_cast<std::remove_reference_t<decltype(function)>>(m_library.resolve(name));
        return function != nullptr;
    };
    return find(newModel, "mecab_model_new") && find(destroyModel, "mecab_model_destroy") &&
           find(dictionaryInfo, "mecab_model_dictionary_info") &&
           find(newTagger, "mecab_model_new_tagger") && find(destroyTagger, "mecab_destroy") &&
           find(newLattice, "mecab_model_new_lattice") &&
           find(destroyLattice, "mecab_lattice_destroy") &&
           find(setSentence, "mecab_lattice_set_sentence2") &&
           find(firstNode, "mecab_lattice_get_bos_node") && find(clear, "mecab_lattice_clear") &&
           find(parse, "mecab_parse_lattice");
}

} // namespace nivora::linuxdesktop
