# The Debian package: `cpack -G DEB` in the build folder (after building) writes
# qx9config_VERSION_ARCH.deb with everything `cmake --install` installs, laid out under /usr.
# Its dependencies are computed by dpkg-shlibdeps from the programs themselves.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qx9config)
set(CPACK_PACKAGE_VENDOR "qx9config")
set(CPACK_PACKAGE_CONTACT "qx9config developers <qx9config@users.noreply.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "configuration utility for the HALVORN QX9 keyboard")
set(CPACK_PACKAGE_DESCRIPTION "Key remapping per profile and Fn layer, macros, backlight effects, per-key
colour sets and game mode for the HALVORN QX9 keyboard: the window halvorn-qx9, the
command-line tool qx9ctl, and the udev rule that gives the user at the seat the
keyboard's configuration interface (and only it).")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Qt's own dialogs (the colour dialog) in Chinese.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-translations-l10n)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/data/debian/postinst ${PROJECT_SOURCE_DIR}/data/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
