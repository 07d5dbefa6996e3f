# How the project is cut into rooms.
#
#   nivora_module(<name> [DEPENDS <module>...] [QT <target>...] [LIBS <target>...]
#                 [WIDGETS])
#       One static library, nivora_<name>, of the sources beside the caller's
#       CMakeLists.txt. Its public headers lie below include/. Its sources see
#       their own headers and those of the modules in DEPENDS, and no others:
#       dependencies are linked privately, so nothing travels further.
#       QT names libraries that show in the public headers, LIBS those that do
#       not. WIDGETS picks the precompiled header with Qt Widgets in it.
#
#   nivora_test(<module> <unit> [DEPENDS <module>...] [LIBS <target>...]
#               [LABELS <label>...] [TIMEOUT <seconds>])
#       One test program of tst_<unit>.cpp beside the caller's CMakeLists.txt,
#       linked to the module under test and to the test support.

include_guard(GLOBAL)

add_library(nivora_options INTERFACE)
# GLib's users compile with -pthread; a precompiled header serves them only if
# it was made with it too.
target_compile_options(nivora_options INTERFACE -pthread -Wall -Wextra -Werror -Wnon-virtual-dtor
    -Woverloaded-virtual $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>)
target_compile_definitions(nivora_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    QT_NO_KEYWORDS QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
# What ships resists what a fault in it might be used for. The sanitizers watch
# more, in their own way.
set(NIVORA_HARDENED "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
if(NIVORA_SANITIZE)
    set(NIVORA_HARDENED 0)
else()
    include(CheckCXXCompilerFlag)
    # The last two guard the targets of jumps, each on processors of its kind.
    foreach(flag -fPIC -fstack-protector-strong -fstack-clash-protection
            -fcf-protection -mbranch-protection=standard)
        string(MAKE_C_IDENTIFIER "NIVORA_HAS${flag}" known)
        check_cxx_compiler_flag(${flag} ${known})
        if(${known})
            target_compile_options(nivora_options INTERFACE "$<${NIVORA_HARDENED}:${flag}>")
        endif()
    endforeach()
    # Some compilers bring a level of their own along.
    target_compile_options(nivora_options INTERFACE
        "$<${NIVORA_HARDENED}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3;-D_GLIBCXX_ASSERTIONS>")
    # Addresses that are merely shifted at the start: 90 KiB to read in the usual form,
    # 1.4 in this one.
    include(CheckLinkerFlag)
    check_linker_flag(CXX LINKER:-z,pack-relative-relocs NIVORA_HAS_PACKED_RELOCATIONS)
    if(NIVORA_HAS_PACKED_RELOCATIONS)
        target_link_options(nivora_options INTERFACE
            "$<${NIVORA_HARDENED}:LINKER:-z,pack-relative-relocs>")
    endif()
    set(program "$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>")
    target_link_options(nivora_options INTERFACE
        "$<${NIVORA_HARDENED}:LINKER:-z,relro,-z,now,-z,noexecstack>"
        "$<$<AND:${NIVORA_HARDENED},${program}>:-pie>")
endif()
# "thread", or "address,undefined", or with "fuzzer-no-link" besides. Their checks lead
# the compiler to see uninitialised values where there are none.
if(NIVORA_SANITIZE)
    target_compile_options(nivora_options INTERFACE -fsanitize=${NIVORA_SANITIZE}
        -fno-sanitize-recover=all -fno-omit-frame-pointer -Wno-maybe-uninitialized)
    target_link_options(nivora_options INTERFACE -fsanitize=${NIVORA_SANITIZE})
endif()
if(NIVORA_SANITIZE STREQUAL "thread")
    add_library(nivora_threads OBJECT "${CMAKE_SOURCE_DIR}/tests/sanitizers/threads.cpp")
    set_target_properties(nivora_threads PROPERTIES AUTOMOC OFF)
    target_link_libraries(nivora_threads PRIVATE Qt6::Core)
    set(program "$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>")
    target_link_libraries(nivora_options INTERFACE
        "$<${program}:$<TARGET_OBJECTS:nivora_threads>>" "$<${program}:Qt6::Core>")
endif()

# Two precompiled headers serve every target: building one for each module
# costs more than it saves.
function(nivora_precompiled_header name qt)
    file(WRITE "${CMAKE_BINARY_DIR}/${name}.cpp.in" "")
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/${name}.cpp" CONTENT "")
    add_library(${name} STATIC "${CMAKE_BINARY_DIR}/${name}.cpp")
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    target_link_libraries(${name} PRIVATE nivora_options ${qt})
    target_compile_options(${name} PRIVATE -fpch-preprocess)
    target_precompile_headers(${name} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/${name}.h")
endfunction()
# Clang serves the fuzz targets alone: not worth a cache-proof header of its own.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    nivora_precompiled_header(pch_core Qt6::Core)
    nivora_precompiled_header(pch_widgets Qt6::Widgets)
endif()

function(nivora_use_precompiled_header target widgets)
    if(NOT TARGET pch_core)
        target_compile_options(${target} PRIVATE
            "SHELL:-include ${CMAKE_SOURCE_DIR}/cmake/$<IF:$<BOOL:${widgets}>,pch_widgets,pch_core>.h")
        return()
    endif()
    target_compile_options(${target} PRIVATE -fpch-preprocess)
    if(widgets)
        target_precompile_headers(${target} REUSE_FROM pch_widgets)
    else()
        target_precompile_headers(${target} REUSE_FROM pch_core)
    endif()
endfunction()

# Lets a target see and link modules without passing them on.
function(nivora_see target)
    foreach(module IN LISTS ARGN)
        target_link_libraries(${target} PRIVATE nivora_${module})
    endforeach()
endfunction()

function(nivora_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "WIDGETS" "" "DEPENDS;QT;LIBS;SOURCES")
    set(target nivora_${name})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp"
        "${CMAKE_CURRENT_SOURCE_DIR}/*.h" "${CMAKE_CURRENT_SOURCE_DIR}/*.qrc")
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/include/*.h")
    add_library(${target} STATIC ${sources} ${headers} ${arg_SOURCES})
    target_include_directories(${target} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}/include")
    target_link_libraries(${target} PUBLIC Qt6::Core ${arg_QT} PRIVATE nivora_options ${arg_LIBS})
    nivora_see(${target} ${arg_DEPENDS})
    set_property(TARGET ${target} PROPERTY NIVORA_DEPENDS "${arg_DEPENDS}")
    nivora_use_precompiled_header(${target} ${arg_WIDGETS})
endfunction()

# A library nivora_<name> that the product loads when it first needs it, with the module
# behind it. The version is in the file's name: a program that was replaced while it
# runs must not load its successor's.
function(nivora_loadable name module entry)
    set(target nivora_${name})
    add_library(${target} MODULE "${entry}")
    target_link_libraries(${target} PRIVATE nivora_options)
    target_link_options(${target} PRIVATE "LINKER:--exclude-libs,ALL")
    nivora_see(${target} platform ${module})
    nivora_use_precompiled_header(${target} FALSE)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME "${name}-${PROJECT_VERSION}"
        PREFIX ""
        CXX_VISIBILITY_PRESET hidden
        LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR}/nivora")
    install(TARGETS ${target} LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/nivora")
endfunction()

# A program that only the product starts: it finds it from its own folder, in the
# build tree as in an installation.
function(nivora_helper target)
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_LIBEXECDIR}/nivora")
    install(TARGETS ${target} RUNTIME DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}/nivora")
endfunction()

# Lets ctest run a test program and end it after so many seconds; whatever else is
# given are the program's arguments. Under sanitizers programs are slower, and the
# test fails by a report of any program that it starts.
function(nivora_run_test name target timeout)
    set(launcher)
    if(NIVORA_SANITIZE)
        set(launcher "${CMAKE_SOURCE_DIR}/tests/sanitizers/run")
        math(EXPR timeout "${timeout} * 5")
    endif()
    add_test(NAME ${name} COMMAND ${launcher} $<TARGET_FILE:${target}> ${ARGN})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${timeout})
endfunction()

function(nivora_test module unit)
    cmake_parse_arguments(PARSE_ARGV 2 arg "WIDGETS" "TIMEOUT" "DEPENDS;LIBS;LABELS")
    set(target tst_${module}_${unit})
    add_executable(${target} tst_${unit}.cpp)
    get_property(seen TARGET nivora_${module} PROPERTY NIVORA_DEPENDS)
    list(APPEND seen ${module} ${arg_DEPENDS})
    list(REMOVE_DUPLICATES seen)
    nivora_see(${target} ${seen})
    target_link_libraries(${target} PRIVATE nivora_options nivora_testsupport Qt6::Test ${arg_LIBS})
    nivora_use_precompiled_header(${target} ${arg_WIDGETS})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    nivora_run_test(${module}.${unit} ${target} ${arg_TIMEOUT})
    # Unit tests never touch the desktop they run on.
    set_tests_properties(${module}.${unit} PROPERTIES LABELS "${arg_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_ACCESSIBILITY=0;LC_ALL=C.UTF-8")
endfunction()
