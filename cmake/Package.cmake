# What `cmake --install` puts in place beside the program, and the Debian package that CPack makes of it.
include_guard(GLOBAL)

find_program(VORMEL_GZIP gzip REQUIRED)
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
set(package_source "${CMAKE_CURRENT_SOURCE_DIR}/packaging")
set(package_files "${CMAKE_BINARY_DIR}/package-files")

# The newest entry's date is that of the changelog itself.
execute_process(COMMAND git -C "${CMAKE_CURRENT_SOURCE_DIR}" log -1 --format=%ct -- CHANGELOG.md
    OUTPUT_VARIABLE VORMEL_RELEASE_TIME OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT VORMEL_RELEASE_TIME)
    file(TIMESTAMP "${CMAKE_CURRENT_SOURCE_DIR}/CHANGELOG.md" VORMEL_RELEASE_TIME "%s" UTC)
endif()
execute_process(COMMAND date --utc "--date=@${VORMEL_RELEASE_TIME}" +%F
    OUTPUT_VARIABLE VORMEL_RELEASE_DATE OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND date --utc "--date=@${VORMEL_RELEASE_TIME}" --rfc-email
    OUTPUT_VARIABLE release_mail_date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)

file(STRINGS CHANGELOG.md headings REGEX "^## ")
if("${headings}" MATCHES "^## Unreleased")
    set(VORMEL_RELEASE_TYPE development)
else()
    set(VORMEL_RELEASE_TYPE stable)
endif()
configure_file("${package_source}/org.vormel.Vormel.metainfo.xml.in" "${package_files}/org.vormel.Vormel.metainfo.xml" @ONLY)

# vormel_compressed_man(<page>) has packaging/man/<page>.in filled in and compressed.
function(vormel_compressed_man page)
    configure_file("${package_source}/man/${page}.in" "${package_files}/${page}" @ONLY)
    add_custom_command(OUTPUT "${package_files}/${page}.gz"
        COMMAND "${VORMEL_GZIP}" --keep --force -n9 "${package_files}/${page}"
        DEPENDS "${package_files}/${page}" VERBATIM)
endfunction()
vormel_compressed_man(vormel.1)
vormel_compressed_man(it/vormel.1)

add_custom_command(OUTPUT "${package_files}/changelog.gz"
    COMMAND awk -v "version=${PROJECT_VERSION}" -v "date=${release_mail_date}" -f "${package_source}/changelog.awk"
            "${CMAKE_CURRENT_SOURCE_DIR}/CHANGELOG.md" > "${package_files}/changelog"
    COMMAND "${VORMEL_GZIP}" --force -n9 "${package_files}/changelog"
    DEPENDS CHANGELOG.md "${package_source}/changelog.awk" VERBATIM)

add_custom_target(vormel_package_files ALL
    DEPENDS "${package_files}/vormel.1.gz" "${package_files}/it/vormel.1.gz" "${package_files}/changelog.gz")
add_dependencies(vormel vormel_package_files)
if(TARGET vormel_web_plugin)
    add_dependencies(vormel vormel_web_plugin)
endif()

include(GNUInstallDirs)
set(icons "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
if(TARGET vormel_web_plugin)
    # CPack takes the folders in lib/ for those of the linker, and would have it run.
    install(TARGETS vormel_web_plugin LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/vormel/plugins")
endif()
install(FILES "${package_source}/org.vormel.Vormel.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${package_files}/org.vormel.Vormel.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES src/kit/icons/vormel.svg DESTINATION "${icons}/scalable/apps" RENAME org.vormel.Vormel.svg)
install(FILES "${package_source}/icons/hicolor/symbolic/apps/org.vormel.Vormel-symbolic.svg"
    DESTINATION "${icons}/symbolic/apps")
install(FILES "${package_files}/vormel.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES "${package_files}/it/vormel.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/it/man1")
install(FILES "${package_source}/completion/vormel.bash"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME vormel)
install(FILES "${package_source}/completion/_vormel" DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions")
install(FILES "${package_source}/completion/vormel.fish" DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
install(FILES "${package_source}/copyright" "${package_files}/changelog.gz" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/vormel")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vormel)
set(CPACK_PACKAGE_CONTACT "Vormel developers <developers@vormel.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://vormel.example/")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "download manager for the desktop
Vormel fetches files from the links that are pasted into it, several at once,
and keeps them in a queue that is there again after a restart. It goes on
after an interruption where it stopped, tries again when a server or a line
fails, and keeps all downloads together below one speed limit.
.
Archives that came in many parts are tested, repaired from their recovery
volumes and unpacked, each kind by a tool of its own: RAR by unrar, ZIP by
unzip, 7z by 7zip. Rebuilding a damaged RAR set takes rar.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What the plugin of the web engine needs is recommended: everything else works without.
set(CPACK_PROJECT_CONFIG_FILE "${package_source}/cpack.cmake")
# Loaded at run time, so that no symbol of the program tells of them: the window system's plugin, the
# Italian of Qt's own dialogs and menus, and what opens links.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, qt6-translations-l10n, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "default-dbus-session-bus | dbus-session-bus, 7zip | p7zip-full, unrar, unzip, bzip2, xz-utils, qt6-wayland")
if(TARGET vormel_web_plugin)
    string(APPEND CPACK_DEBIAN_PACKAGE_RECOMMENDS ", libqt6webenginewidgets6")
endif()
set(CPACK_DEBIAN_PACKAGE_SUGGESTS rar)
include(CPack)
