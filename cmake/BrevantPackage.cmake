# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later

# What an installation has besides the programs, and the Debian package, which scripts/package makes.
find_program(BREVANT_GZIP gzip REQUIRED)
mark_as_advanced(BREVANT_GZIP)
set(changelog "${CMAKE_BINARY_DIR}/changelog.gz")
add_custom_command(OUTPUT "${changelog}"
    COMMAND "${CMAKE_SOURCE_DIR}/packages/debian/make-changelog" "${CMAKE_SOURCE_DIR}/CHANGELOG.md" "${changelog}"
    DEPENDS CHANGELOG.md packages/debian/make-changelog
    VERBATIM)
add_custom_target(changelog ALL DEPENDS "${changelog}")
install(FILES packages/debian/lintian-overrides DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" RENAME brevant)
install(FILES packages/debian/copyright "${changelog}" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/brevant")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brevant)
set(contact "${BREVANT_SUPPORT_MAIL}")
if(NOT contact)
    set(contact "support@brevant.example") # Debian wants one
endif()
set(CPACK_PACKAGE_CONTACT "The Brevant developers <${contact}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "minifier for CSS, JavaScript, HTML and PHP files")
set(CPACK_PACKAGE_DESCRIPTION
"Brevant minifies web source files: drop files or folders on its window and
press Minify, and a minified copy of each is written beside it or into a
folder of your choice. It combines several files into one, makes gzip copies,
shows the files of its list, and knows eleven character sets.
.
brevant-cli does the same in terminals and build scripts.
.
The work is done by YUI Compressor and htmlcompressor or, for sources of
today, by esbuild and minify; all of them are included.")
# Files that name the prefix must name the one of the installed package, not of the folder it is put together in.
set(CPACK_SET_DESTDIR ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${BREVANT_HOME_PAGE}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# What is linked is found by dpkg-shlibdeps, what the sound loads is not; gzip is on every Debian system. Without the recommended ones the program
# works, but: no window in a pure Wayland session, no icons of file kinds outside a desktop that has some, no links.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "default-jre-headless | java-runtime-headless, fonts-dejavu-core, libpulse0, libsndfile1")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "breeze-icon-theme, brotli, qt6-wayland, xdg-utils")
# The context menu of Nautilus; the actions of the menu entry where the desktop does not start them over the bus.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libglib2.0-bin, python3-nautilus")

set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/BrevantStaging.cmake")
include(CPack)
