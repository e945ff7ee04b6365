# One interface target, vormel_rules, carries the language level, the warnings and the Qt rules of every target.
include_guard(GLOBAL)

set(VORMEL_SANITIZE "" CACHE STRING "Sanitizers to build with, as the compiler names them (address,undefined or thread)")
option(VORMEL_JOINED "Compile the files of a floor several at once: a first build takes a third, any later one longer" OFF)
option(VORMEL_ASSERTIONS "Check library and Qt assertions also in optimised builds" OFF)

find_program(VORMEL_CCACHE ccache)
if(VORMEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${VORMEL_CCACHE}")
endif()

add_library(vormel_rules INTERFACE)
target_compile_features(vormel_rules INTERFACE cxx_std_20)
target_compile_options(vormel_rules INTERFACE
    -Wall -Wextra -Wpedantic -Werror
    -Wold-style-cast -Wcast-qual -Woverloaded-virtual -Wnon-virtual-dtor -Wshadow -Wconversion -Wsign-conversion
    -Wnull-dereference -Wimplicit-fallthrough
    # GCC 12 sees overlaps in std::string's own operator+ that are not there.
    -Wno-restrict
    # Some libraries ask for it, and headers are compiled once for all.
    -pthread)
target_compile_definitions(vormel_rules INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS QT_NO_KEYWORDS QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x060400 QT_MESSAGELOGCONTEXT)
if(VORMEL_ASSERTIONS)
    target_compile_definitions(vormel_rules INTERFACE QT_FORCE_ASSERTS _GLIBCXX_ASSERTIONS)
endif()
if(VORMEL_SANITIZE)
    target_compile_options(vormel_rules INTERFACE
        -fsanitize=${VORMEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
        -g1 # their reports want lines, and no more
        # The sanitizers hide facts from the optimiser's null analysis, which then warns of what cannot be.
        -Wno-null-dereference -Wno-maybe-uninitialized)
    target_link_options(vormel_rules INTERFACE -fsanitize=${VORMEL_SANITIZE})
endif()

if(VORMEL_JOINED)
    # A local name may be another file's, and what has no linkage is seen in a file that is included.
    target_compile_options(vormel_rules INTERFACE -Wno-shadow -Wno-subobject-linkage)
endif()

find_program(VORMEL_MOLD mold)
if(VORMEL_MOLD)
    target_link_options(vormel_rules INTERFACE -fuse-ld=mold)
endif()

# vormel_floor(<name> DEPENDS <targets>... EXCEPT <files>... HEADERS <name>) makes the static library vormel_<name> of every
# source file below the calling folder but those; HEADERS are what each begins with, if not the common ones. A floor names the
# floors it stands on; the architecture test holds its includes to that.
function(vormel_floor name)
    cmake_parse_arguments(FLOOR "" "HEADERS" "DEPENDS;EXCEPT" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
    foreach(file IN LISTS FLOOR_EXCEPT)
        list(REMOVE_ITEM sources "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
    endforeach()
    add_library(vormel_${name} STATIC ${sources})
    target_include_directories(vormel_${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(vormel_${name} PUBLIC vormel_rules ${FLOOR_DEPENDS})
    set_target_properties(vormel_${name} PROPERTIES UNITY_BUILD ${VORMEL_JOINED} UNITY_BUILD_BATCH_SIZE 10)
    if(NOT FLOOR_HEADERS)
        set(FLOOR_HEADERS headers)
    endif()
    vormel_precompile(vormel_${name} ${FLOOR_HEADERS})
endfunction()
