# What Debian's own builds switch on against the misuse of memory errors, beside the position-independent code that its compiler
# makes by itself. Where a sanitizer watches instead, it would be in its way.
include_guard(GLOBAL)

if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT VORMEL_SANITIZE)
    target_compile_options(vormel_rules INTERFACE
        -D_FORTIFY_SOURCE=2 -fstack-protector-strong -fstack-clash-protection
        $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>:-fcf-protection>)
    target_link_options(vormel_rules INTERFACE -Wl,-z,relro,-z,now)
endif()
