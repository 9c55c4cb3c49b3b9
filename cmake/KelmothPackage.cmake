# The Debian package; script/package makes it, and adds the packages of QML modules to its dependencies.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Kelmoth contributors <contact@kelmoth.com>")
set(CPACK_PACKAGE_NAME kelmoth)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/KelmothPackageFiles.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What draws in a Wayland session without an X server, and what acts on the rule's tag.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, udev")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS gnome-shell-extension-appindicator)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "configure mice of the Razer Basilisk V3 family")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Kelmoth lives in the system tray and shows and changes what the mouse itself
holds: DPI stages, lighting, button assignments, lift-off distance; and its
battery. It knows the Basilisk V3 (by cable), the Basilisk V3 Pro (by cable or
2.4 GHz receiver) and the Basilisk V3 X HyperSpeed (by receiver).

It needs no service in the background, never runs as root, and leaves the
pointer to the kernel's own driver. kelmothctl does the same on a terminal.

An independent project, not affiliated with Razer Inc.")
configure_file(${PROJECT_SOURCE_DIR}/Resources/debian/postinst postrm COPYONLY)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/Resources/debian/postinst ${PROJECT_BINARY_DIR}/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

include(CPack)
