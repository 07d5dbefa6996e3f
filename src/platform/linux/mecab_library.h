#pragma once

#include <QLibrary>

#include <mecab.h>

#include <memory>

namespace nivora::linuxdesktop {

// MeCab, loaded when somebody reads Japanese for the first time: other users' programs
// do not carry it. Its interface in C, which can be looked up by name.
class MecabLibrary
{
public:
    template<auto Member>
    struct Release
    {
        const MecabLibrary *library = nullptr;

        template<typename Type>
        void operator()(Type *object) const
        {
            (library->*Member)(object);
        }
    };

    MecabLibrary();
    // False where it cannot be used; nothing below may be called then.
    bool load();
    QString errorString() const { return m_library.errorString(); }

    decltype(&mecab_model_new) newModel = nullptr;
    decltype(&mecab_model_destroy) destroyModel = nullptr;
    decltype(&mecab_model_dictionary_info) dictionaryInfo = nullptr;
    decltype(&mecab_model_new_tagger) newTagger = nullptr;
    decltype(&mecab_destroy) destroyTagger = nullptr;
    decltype(&mecab_model_new_lattice) newLattice = nullptr;
    decltype(&mecab_lattice_destroy) destroyLattice = nullptr;
    decltype(&mecab_lattice_set_sentence2) setSentence = nullptr;
    decltype(&mecab_lattice_get_bos_node) firstNode = nullptr;
    decltype(&mecab_lattice_clear) clear = nullptr;
    decltype(&mecab_parse_lattice) parse = nullptr;

    using Model = std::unique_ptr<mecab_model_t, Release<&MecabLibrary::destroyModel>>;
    using Tagger = std::unique_ptr<mecab_t, Release<&MecabLibrary::destroyTagger>>;
    using Lattice = std::unique_ptr<mecab_lattice_t, Release<&MecabLibrary::destroyLattice>>;

private:
    QLibrary m_library;
};

} // namespace nivora::linuxdesktop
