# The Debian packages: `cpack` in the build folder (after building) writes two packages with what
# `cmake --install` installs, laid out under /usr:
#   qx9ctl     the command-line tool, its manual page and completion, the udev rule and its probe
#              (components "cli" and "udev"): no Qt, for a server or a minimal desktop;
#   qx9config  the window, its manual page, desktop file, metainfo and icons (component "window"),
#              depending on qx9ctl of the same version.
# Their other dependencies are computed by dpkg-shlibdeps from the programs themselves. Every file
# in them is dated by the changelog unless SOURCE_DATE_EPOCH says otherwise, so that the same
# source gives the same packages.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qx9config)
set(CPACK_PACKAGE_VENDOR "qx9config")
set(CPACK_PACKAGE_CONTACT "qx9config developers <qx9config@users.noreply.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://qx9config.org/")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_CMDLINE_PACKAGE_NAME ${QX9_CLI_PACKAGE})
set(CPACK_DEBIAN_CMDLINE_DESCRIPTION "configure the HALVORN QX9 keyboard from the command line
qx9ctl changes what the window of the qx9config package changes: key
remapping per profile and Fn layer, macros, backlight effects, per-key colour
sets, game mode and settings, kept in the same local database and written to
the keyboard as HID feature reports. It exports and imports the whole
configuration as one JSON document.
.
The package also installs the udev rule that gives the user at the seat the
keyboard's configuration interface, and nothing else of it, without root.")
# The rule is read by udev on installation and forgotten on removal.
set(CPACK_DEBIAN_CMDLINE_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/data/debian/postinst ${PROJECT_SOURCE_DIR}/data/debian/postrm)

set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME ${QX9_WINDOW_PACKAGE})
set(CPACK_DEBIAN_WINDOW_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_WINDOW_PACKAGE_DEPENDS "${QX9_CLI_PACKAGE} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_WINDOW_DESCRIPTION "configuration utility for the HALVORN QX9 keyboard
The window halvorn-qx9 configures the HALVORN QX9 mechanical keyboard with
per-key RGB lighting: key remapping per profile and Fn layer, macros recorded
and edited with their delays, twenty backlight effects, per-key colour sets,
game mode and three interface languages (English, Simplified and Traditional
Chinese). Every setting is kept in a local database and written to the
keyboard without root.")
# Qt's own dialogs (the colour dialog) in Chinese, and the Chinese interface's font.
set(CPACK_DEBIAN_WINDOW_PACKAGE_RECOMMENDS "qt6-translations-l10n, fonts-noto-cjk")

if(QX9_BUILD_GUI)
    set(CPACK_COMPONENTS_ALL cli udev window)
else()
    set(CPACK_COMPONENTS_ALL cli udev)
endif()

# cpack reads this file when it runs: the changelog's date for every file unless the build gives one.
set(QX9_CPACK_PROJECT_FILE ${PROJECT_BINARY_DIR}/CPackProjectConfig.cmake)
file(WRITE ${QX9_CPACK_PROJECT_FILE} "if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})\n    set(ENV{SOURCE_DATE_EPOCH} ${QX9_RELEASE_EPOCH})\nendif()\n")
set(CPACK_PROJECT_CONFIG_FILE ${QX9_CPACK_PROJECT_FILE})
include(CPack)
cpack_add_component_group(cmdline)
cpack_add_component_group(window)
cpack_add_component(cli GROUP cmdline)
cpack_add_component(udev GROUP cmdline)
cpack_add_component(window GROUP window)
