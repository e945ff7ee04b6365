# Headers that most files include are compiled once for all targets that begin with them, as each such file is 150 MB and more.
# That no file leans on this is held by the test that compiles each header of the floors alone.
include_guard(GLOBAL)

option(VORMEL_PRECOMPILED_HEADERS "Compile what most files include once" ON)

# vormel_headers(<name> DEPENDS <targets>... HEADERS <headers>...) makes the headers vormel_<name>: the common ones and these,
# compiled as those targets ask.
function(vormel_headers name)
    cmake_parse_arguments(SET "" "" "DEPENDS;HEADERS" ${ARGN})
    if(VORMEL_PRECOMPILED_HEADERS)
        add_library(vormel_${name} OBJECT "${PROJECT_SOURCE_DIR}/cmake/PrecompiledHeaders.cpp")
        set_target_properties(vormel_${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
        target_link_libraries(vormel_${name} PRIVATE vormel_rules ${SET_DEPENDS})
        target_precompile_headers(vormel_${name} PRIVATE
            <QCoroTask> <QDir> <QFile> <QFileInfo> <QHash> <QObject> <QSet> <QString> <QStringList> <QUrl>
            <algorithm> <array> <chrono> <functional> <memory> <mutex> <optional> <span> <unordered_map> <vector> ${SET_HEADERS})
    endif()
endfunction()

# vormel_precompile(<target> <name>) has the target's files begin with those headers, which were made with the same options.
function(vormel_precompile target name)
    if(VORMEL_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} REUSE_FROM vormel_${name})
    endif()
endfunction()

vormel_headers(headers DEPENDS Qt6::Core QCoro6::Coro)
vormel_headers(widget_headers DEPENDS Qt6::Widgets QCoro6::Coro HEADERS <QtWidgets>)
