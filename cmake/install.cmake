# install.cmake - what `cmake --install` puts where (the GNU directories
# under any prefix), and the Debian package that CPack builds from it.
#
#   bin/vorhost                         the program
#   lib/vormis/vormis.arx               the module vorhost loads (LIBDIR)
#   lib/vormis/vorhost-window.so        the window vorhost opens for --gui
#                                       (when built with Qt 6)
#   share/vormis/dcl/                   the module's dialog and help files
#   share/vormis/resources/             the host's own resources
#   share/man/man1/vorhost.1            the manual page
#   share/doc/vormis/                   README, licence, docs/, examples/
#
# The program finds lib/vormis and share/vormis from its own folder, so the
# tree can be moved whole.

configure_file(${CMAKE_SOURCE_DIR}/docs/vorhost.1.in ${CMAKE_BINARY_DIR}/vorhost.1 @ONLY)

install(TARGETS vorhost RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS vormis_module LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/vormis)
if(TARGET vorhost_window)
  install(TARGETS vorhost_window LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/vormis)
endif()
install(DIRECTORY ${CMAKE_SOURCE_DIR}/dcl/ DESTINATION ${CMAKE_INSTALL_DATADIR}/vormis/dcl)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/resources/ DESTINATION ${CMAKE_INSTALL_DATADIR}/vormis/resources
        PATTERN README.md EXCLUDE)
install(FILES ${CMAKE_BINARY_DIR}/vorhost.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_SOURCE_DIR}/README.md ${CMAKE_SOURCE_DIR}/LICENSE
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
# Debian looks for the licence under this name.
install(FILES ${CMAKE_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs
        PATTERN vorhost.1.in EXCLUDE)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

# ---- The Debian package ------------------------------------------------------
# cpack -G DEB in the build folder writes vormis_VERSION_ARCH.deb. Its
# dependencies: the C and C++ runtimes and, with the window, Qt 6, as
# dpkg-shlibdeps finds them (iconv is part of the C library), and a CJK font, without which the Chinese texts of the SVG
# drawings show as boxes.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vormis)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The vormis authors")
set(CPACK_PACKAGE_CONTACT "The vormis authors <maintainers@vormis.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "drafting tools for building-services designers, in an emulated CAD host")
set(CPACK_PACKAGE_DESCRIPTION
    "Run-type catalogues for electrical, signal and piping runs, their labels and linetype files, and panel single-line diagrams drawn from schedule files, as a module of a CAD host; vorhost runs it on Linux, played by a script or a person, and writes DXF and SVG. Texts are Traditional Chinese in Big5.")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-wqy-microhei | fonts-noto-cjk")
include(CPack)
