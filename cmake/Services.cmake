# The services' domains and addresses are build configuration: cache variables, written into one generated header.
include_guard(GLOBAL)

set(VORMEL_FILESTORE_DOMAIN "filestore.example" CACHE STRING "Web domain of the Filestore service")
set(VORMEL_FILESTORE_DISPLAY_NAME "Filestore.example" CACHE STRING "Label shown for the Filestore service")
set(VORMEL_TERABYTEZ_DOMAIN "terabytez.example" CACHE STRING "Web domain of the Terabytez service")
set(VORMEL_TERABYTEZ_HOST_KEY "terabytez-host.example" CACHE STRING "Stored key of the Terabytez service")
set(VORMEL_TERABYTEZ_DISPLAY_NAME "Terabytez" CACHE STRING "Label shown for the Terabytez service")
set(VORMEL_OTHER_FILE_HOST_DOMAINS
    "rapidgator.net;turbobit.net;uploaded.net;1fichier.com;katfile.com;nitroflare.com;mega.nz;ddownload.com;mixdrop.co;filespace.com"
    CACHE STRING "Domains of the other file hosts whose links are recognised in containers")
set(VORMEL_DONATION_URL "https://vormel.example/beer" CACHE STRING "Address behind the donation button")
set(VORMEL_UPDATE_FEED_URL "" CACHE STRING
    "https address of the feed of releases; while it is empty, the program never looks for updates")
set(VORMEL_TELEMETRY_URL "" CACHE STRING
    "Address that counts installations; while it is empty, nothing is ever sent")
set(VORMEL_BREW_INSTALLER_URL "" CACHE STRING
    "Address of the Homebrew installer script; while it is empty, the program does not offer to install it")

list(LENGTH VORMEL_OTHER_FILE_HOST_DOMAINS other_count)
math(EXPR VORMEL_KNOWN_FILE_HOST_COUNT "${other_count} + 3")
list(TRANSFORM VORMEL_OTHER_FILE_HOST_DOMAINS REPLACE "(.+)" "    QLatin1StringView{\"\\1\"}" OUTPUT_VARIABLE lines)
list(JOIN lines ",\n" VORMEL_OTHER_FILE_HOST_LINES)

configure_file("${CMAKE_CURRENT_LIST_DIR}/Services.h.in" "${CMAKE_BINARY_DIR}/generated/config/Services.h" @ONLY)
add_library(vormel_services INTERFACE)
target_include_directories(vormel_services INTERFACE "${CMAKE_BINARY_DIR}/generated")
