# The hardening a distribution builds its packages with (what `dpkg-buildflags` gives with
# DEB_BUILD_MAINT_OPTIONS=hardening=+all): stack protector, stack clash protection, control-flow
# protection, fortified libc calls, format checks, position-independent executables, read-only
# relocations bound at start-up. Optimised builds only: the sanitizer and fuzz builds (Debug) go
# without, as the sanitizers want. Paths of the source and build trees are left out of the
# binaries, so that two builds of the same source in different folders give the same files.
option(QX9_HARDENING "Build optimised binaries with the distribution's hardening flags" ON)

if(QX9_HARDENING AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    add_compile_options(-fstack-protector-strong -fstack-clash-protection -Wformat -Werror=format-security
                        -Wdate-time -Werror=date-time)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|i.86")
        add_compile_options(-fcf-protection)
    endif()
    # Unless the flags of the build (dpkg-buildflags' CPPFLAGS, say) already fortify.
    if(NOT "${CMAKE_CXX_FLAGS} $ENV{CPPFLAGS}" MATCHES "_FORTIFY_SOURCE")
        add_compile_definitions(_FORTIFY_SOURCE=2)
    endif()
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,--as-needed)
endif()
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=.)
