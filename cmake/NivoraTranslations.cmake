# The interface's texts in other languages.
#
#   nivora_translations(<target>)
#       Puts the catalogues of resources/translations into the program, below
#       :/translations. They are not compressed there: the program reads them where
#       the linker put them.
#
# The target `update_translations` brings the catalogues up to date with the
# sources: new texts come in as unfinished, texts that are gone go.

include_guard(GLOBAL)

file(GLOB NIVORA_CATALOGUES CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/translations/*.ts")
add_custom_target(update_translations
    COMMAND Qt6::lupdate -locations none -no-obsolete -source-language zh_CN
        "${CMAKE_SOURCE_DIR}/src" -ts ${NIVORA_CATALOGUES}
    VERBATIM)

function(nivora_translations target)
    set(compiled)
    foreach(catalogue IN LISTS NIVORA_CATALOGUES)
        get_filename_component(name "${catalogue}" NAME_WLE)
        set(output "${CMAKE_CURRENT_BINARY_DIR}/${name}.qm")
        # A text that equals its source needs no entry.
        add_custom_command(OUTPUT "${output}"
            COMMAND Qt6::lrelease -silent -nounfinished -removeidentical "${catalogue}" -qm "${output}"
            DEPENDS "${catalogue}"
            VERBATIM)
        list(APPEND compiled "${output}")
    endforeach()
    qt_add_resources(${target} translations
        PREFIX "/translations"
        BASE "${CMAKE_CURRENT_BINARY_DIR}"
        FILES ${compiled}
        OPTIONS --no-compress)
endfunction()
