# The services' domains and addresses are build configuration: cache variables, written into one generated header.
include_guard(GLOBAL)

set(VORMEL_FILESTORE_DOMAIN "filestore.example" CACHE STRING "Web domain of the Filestore service")
set(VORMEL_FILESTORE_DISPLAY_NAME "Filestore.example" CACHE STRING "Label shown for the Filestore service")
set(VORMEL_TERABYTEZ_DOMAIN "terabytez.example" CACHE STRING "Web domain of the Terabytez service")
set(VORMEL_TERABYTEZ_HOST_KEY "files.terabytez.example" CACHE STRING "Stored key of the Terabytez service")
if(NOT VORMEL_TERABYTEZ_HOST_KEY MATCHES "terabytez[.]")
    message(FATAL_ERROR "VORMEL_TERABYTEZ_HOST_KEY must have \"terabytez.\" in it, or its links would not be known for "
        "Terabytez'. A build folder may still have an older default: -U VORMEL_TERABYTEZ_HOST_KEY forgets it.")
endif()
set(VORMEL_TERABYTEZ_DISPLAY_NAME "Terabytez" CACHE STRING "Label shown for the Terabytez service")
set(VORMEL_OTHER_FILE_HOST_DOMAINS
    "rapidgator.net;turbobit.net;uploaded.net;1fichier.com;katfile.com;nitroflare.com;mega.nz;ddownload.com;mixdrop.co;filespace.com"
    CACHE STRING "Domains of the other file hosts whose links are recognised in containers")
# A link belongs to a container whose domain its host has in it, so none of these may have another's in it.
set(VORMEL_FILECRYPT_DOMAINS "filecrypt.example;filecrypt-safe.example" CACHE STRING
    "Both domains of the FileCrypt containers")
set(VORMEL_LFILECRYPT_DOMAINS "lfile.example;lfile-safe.example;lfile-box.example;lfile-folder.example" CACHE STRING
    "All four domains of the LFileCrypt containers")
set(VORMEL_KEEPLINKS_DOMAINS "keeplinks.example;keeplinks-safe.example" CACHE STRING
    "Both domains of the Keeplinks containers")
set(VORMEL_KEEPLINKS_ROOT_URL "https://www.keeplinks.example/" CACHE STRING
    "Address that a reader of a Keeplinks container is said to come from")
set(VORMEL_DONATION_URL "https://vormel.example/beer" CACHE STRING "Address behind the donation button")
set(VORMEL_UPDATE_FEED_URL "" CACHE STRING
    "https address of the feed of releases; while it is empty, the program never looks for updates")
set(VORMEL_TELEMETRY_URL "" CACHE STRING
    "Address that counts installations; while it is empty, nothing is ever sent")
set(VORMEL_BREW_INSTALLER_URL "" CACHE STRING
    "Address of the Homebrew installer script; while it is empty, the program does not offer to install it")

# The entries of a C++ array of these domains, and how many there are with what stands before them.
function(vormel_domain_array list before count_name lines_name)
    list(LENGTH ${list} count)
    math(EXPR count "${count} + ${before}")
    list(TRANSFORM ${list} REPLACE "(.+)" "    QLatin1StringView{\"\\1\"}" OUTPUT_VARIABLE lines)
    list(JOIN lines ",\n" lines)
    set(${count_name} ${count} PARENT_SCOPE)
    set(${lines_name} "${lines}" PARENT_SCOPE)
endfunction()

vormel_domain_array(VORMEL_OTHER_FILE_HOST_DOMAINS 3 VORMEL_KNOWN_FILE_HOST_COUNT VORMEL_OTHER_FILE_HOST_LINES)
foreach(container FILECRYPT LFILECRYPT KEEPLINKS)
    vormel_domain_array(VORMEL_${container}_DOMAINS 0 VORMEL_${container}_COUNT VORMEL_${container}_LINES)
endforeach()

configure_file("${CMAKE_CURRENT_LIST_DIR}/Services.h.in" "${CMAKE_BINARY_DIR}/generated/config/Services.h" @ONLY)
add_library(vormel_services INTERFACE)
target_include_directories(vormel_services INTERFACE "${CMAKE_BINARY_DIR}/generated")
