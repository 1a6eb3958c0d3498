# Installing like any Linux desktop program: the three programs, the desktop
# entry, the icon in the hicolor theme, the AppStream metainfo, the manual
# pages and the HTML manual; and a Debian package made from the same rules.
# Included after the targets exist.

# Debian keeps a package's documents under its own lower-case name. Qt's
# package files have included GNUInstallDirs already, which left the project
# name's folder behind as the default; a folder given on the command line wins.
get_property(tv_docdir_given CACHE CMAKE_INSTALL_DOCDIR PROPERTY VALUE)
if(NOT tv_docdir_given)
  set(CMAKE_INSTALL_DOCDIR share/doc/tallyvane)
endif()
include(GNUInstallDirs)

# The date of the release that project(VERSION) names, for the manual pages
# and the metainfo.
set(TALLYVANE_RELEASE_DATE "2026-11-23")

set(tv_res ${PROJECT_SOURCE_DIR}/resources)
set(tv_gen ${PROJECT_BINARY_DIR}/install-files)

# The program finds its installed manual from its own folder, so a staged or
# relocated install still does.
file(RELATIVE_PATH tv_manual_from_bin ${CMAKE_INSTALL_FULL_BINDIR}
     ${CMAKE_INSTALL_FULL_DOCDIR}/manual/index.html)
set_source_files_properties(${PROJECT_SOURCE_DIR}/src/core/Places.cpp DIRECTORY ${PROJECT_SOURCE_DIR}/src
  PROPERTIES COMPILE_DEFINITIONS "TALLYVANE_MANUAL_FROM_BIN=\"${tv_manual_from_bin}\"")

install(TARGETS tallyvane tallyvane-diff tallyvane-convert RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The .xls reader is a helper the programs start, not a command for users:
# it goes into the helper folder, found from the programs' own folder.
set(tv_helperdir ${CMAKE_INSTALL_LIBEXECDIR}/tallyvane)
install(TARGETS tallyvane-xls-reader RUNTIME DESTINATION ${tv_helperdir})
file(RELATIVE_PATH tv_xls_reader_from_bin ${CMAKE_INSTALL_FULL_BINDIR}
     ${CMAKE_INSTALL_FULL_LIBEXECDIR}/tallyvane/tallyvane-xls-reader)
set_source_files_properties(${PROJECT_SOURCE_DIR}/src/components/lexiform/XlsReader.cpp
  DIRECTORY ${PROJECT_SOURCE_DIR}/src
  PROPERTIES COMPILE_DEFINITIONS "TALLYVANE_XLS_READER_FROM_BIN=\"${tv_xls_reader_from_bin}\"")

install(FILES ${tv_res}/tallyvane.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)

set(TALLYVANE_APPSTREAM_ID example.merrowgate.tallyvane)
configure_file(${tv_res}/tallyvane.metainfo.xml.in ${tv_gen}/${TALLYVANE_APPSTREAM_ID}.metainfo.xml @ONLY)
install(FILES ${tv_gen}/${TALLYVANE_APPSTREAM_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

install(DIRECTORY ${tv_res}/manual/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/manual)

# The icon: the SVG as drawn, and PNGs rasterised from it for the sizes that
# menus and panels ask for, so no old PNG outlives a change of the drawing.
install(FILES ${tv_res}/icons/tallyvane.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
find_program(RSVG_CONVERT rsvg-convert)
set(tv_icon_sizes 16 22 24 32 48 64 128 256 512)
if(RSVG_CONVERT)
  set(tv_pngs)
  foreach(size ${tv_icon_sizes})
    set(png ${tv_gen}/icons/${size}x${size}/tallyvane.png)
    add_custom_command(OUTPUT ${png}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${tv_gen}/icons/${size}x${size}
      COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${png} ${tv_res}/icons/tallyvane.svg
      DEPENDS ${tv_res}/icons/tallyvane.svg VERBATIM)
    list(APPEND tv_pngs ${png})
    install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
  endforeach()
  add_custom_target(tallyvane-icons ALL DEPENDS ${tv_pngs})
else()
  message(WARNING "rsvg-convert not found (Debian package librsvg2-bin): only the SVG icon is installed")
endif()

# Manual pages: written in man(7) form with the version filled in here, then
# compressed as Debian installs them.
set(TALLYVANE_MANUAL ${CMAKE_INSTALL_DOCDIR}/manual/index.html)
set(tv_manpages)
foreach(prog tallyvane tallyvane-diff tallyvane-convert)
  configure_file(${tv_res}/man/${prog}.1.in ${tv_gen}/man/${prog}.1 @ONLY)
  add_custom_command(OUTPUT ${tv_gen}/man/${prog}.1.gz
    COMMAND gzip -9 -n -f -k ${tv_gen}/man/${prog}.1
    DEPENDS ${tv_gen}/man/${prog}.1 VERBATIM)
  list(APPEND tv_manpages ${tv_gen}/man/${prog}.1.gz)
  install(FILES ${tv_gen}/man/${prog}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
add_custom_target(tallyvane-manpages ALL DEPENDS ${tv_manpages})

# The Debian package (make package). Its dependencies come from the shared
# libraries the programs link; the converters for legacy formats are
# recommended, since without them only those formats fail, with a message.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tallyvane)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Merrowgate, Inc.")
set(CPACK_PACKAGE_CONTACT "Merrowgate, Inc. <support@merrowgate.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "compare documents, folders and source files")
set(CPACK_PACKAGE_DESCRIPTION
  "Tallyvane compares two documents side by side or merged into one, down to\n"
  "the word, and walks through the differences. It reads plain text and source\n"
  "code, rich text, Word, Excel, OpenDocument, PDF and HTML files, compares\n"
  "folders by size, date or content, finds text in files, and has a batch\n"
  "command line that leaves a report and an exit status behind.")
string(REPLACE ";" "" CPACK_PACKAGE_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://www.merrowgate.example/tallyvane")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Qt loads the window system's plugin at run time, so no library names it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "antiword, catdoc, libwpd-tools, libwps-tools, libmwaw-tools, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libreoffice-core")
include(CPack)
