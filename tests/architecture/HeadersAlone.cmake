# Compiles every header of the floors on its own, so that none leans on what another file included before it. Each is
# included twice: the second time must add nothing.
foreach(floor text platform webengine model archive resolvers engine kit ui web app)
    if(NOT TARGET vormel_${floor})
        continue() # A floor that is no library offers its headers to nobody.
    endif()
    list(APPEND header_floors vormel_${floor})
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/src/${floor}/*.h")
    foreach(header IN LISTS headers)
        set(source "${CMAKE_CURRENT_BINARY_DIR}/headers/${header}.cpp")
        file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${header}\"\n#include \"${header}\"\n" @ONLY)
        list(APPEND header_sources "${source}")
    endforeach()
endforeach()

if(header_sources)
    add_library(vormel_headers_alone OBJECT ${header_sources})
    target_link_libraries(vormel_headers_alone PRIVATE ${header_floors} PkgConfig::LIBSECRET)
    target_compile_options(vormel_headers_alone PRIVATE -O0 -g0 -Wno-null-dereference)
    set_target_properties(vormel_headers_alone PROPERTIES AUTOMOC OFF AUTORCC OFF)
    if(VORMEL_SANITIZE)
        # Nothing runs here, hence nothing to sanitize.
        set_target_properties(vormel_headers_alone PROPERTIES EXCLUDE_FROM_ALL ON)
    endif()
endif()
