# Two Debian packages: the program, and the tools for scripts and tries.
include(GNUInstallDirs)
find_program(GZIP gzip)
find_program(DATE date)
if(DATE)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${DATE} -u -R -d ${FIRMLANE_RELEASE_DATE}
    OUTPUT_VARIABLE FIRMLANE_RELEASE_DATE_LONG
    OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()
set(made ${CMAKE_CURRENT_BINARY_DIR}/linux)

# Installs a text packed, as the system keeps its documents.
function(firmlane_install_packed component source folder name)
  if(NOT GZIP)
    install(FILES ${source} DESTINATION ${folder} RENAME ${name} COMPONENT ${component})
    return()
  endif()
  set(packed ${made}/${component}/${name}.gz)
  add_custom_command(
    OUTPUT ${packed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${made}/${component}
    COMMAND ${CMAKE_COMMAND} -E copy ${source} ${made}/${component}/${name}
    COMMAND ${GZIP} -9nf ${made}/${component}/${name}
    DEPENDS ${source}
    VERBATIM)
  string(MAKE_C_IDENTIFIER packed_${component}_${name} target)
  add_custom_target(${target} ALL DEPENDS ${packed})
  install(FILES ${packed} DESTINATION ${folder} COMPONENT ${component})
endfunction()

# A package: programs with their man pages, and what the system wants to know of it.
function(firmlane_package component)
  set(FIRMLANE_PACKAGE ${component})
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${component})
  foreach(program ${ARGN})
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component})
    configure_file(${FIRMLANE_PACKAGING}/linux/man/${program}.1.in ${made}/${program}.1 @ONLY)
    firmlane_install_packed(${component} ${made}/${program}.1 ${CMAKE_INSTALL_MANDIR}/man1 ${program}.1)
  endforeach()
  configure_file(${FIRMLANE_PACKAGING}/linux/changelog.Debian.in ${made}/changelog-${component} @ONLY)
  firmlane_install_packed(${component} ${made}/changelog-${component} ${documents} changelog.Debian)
  firmlane_install_packed(${component} ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents} changelog)
  install(FILES ${FIRMLANE_PACKAGING}/linux/copyright DESTINATION ${documents} COMPONENT ${component})
  configure_file(${FIRMLANE_PACKAGING}/linux/lintian-overrides.in ${made}/lintian-overrides-${component} @ONLY)
  install(FILES ${made}/lintian-overrides-${component} DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
          RENAME ${component} COMPONENT ${component})
endfunction()

# An entry of the desktop's menu with its icon.
function(firmlane_desktop_entry component program)
  set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
  install(FILES ${FIRMLANE_PACKAGING}/linux/${program}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
          COMPONENT ${component})
  install(FILES ${FIRMLANE_ICON} DESTINATION ${icons}/scalable/apps RENAME ${program}.svg COMPONENT ${component})
  if(TARGET icons)
    foreach(size ${FIRMLANE_ICON_SIZES})
      install(FILES ${CMAKE_CURRENT_BINARY_DIR}/icons/${size}.png DESTINATION ${icons}/${size}x${size}/apps
              RENAME ${program}.png COMPONENT ${component})
    endforeach()
  endif()
endfunction()

firmlane_package(firmlane firmlane)
firmlane_desktop_entry(firmlane firmlane)
configure_file(${FIRMLANE_PACKAGING}/linux/metainfo.xml.in ${made}/example.tolvex.firmlane.metainfo.xml @ONLY)
install(FILES ${made}/example.tolvex.firmlane.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT firmlane)

firmlane_package(firmlane-tools firmlane-console firmlane-simulator firmlane-demo)
firmlane_desktop_entry(firmlane-tools firmlane-demo)
foreach(page console record)
  firmlane_install_packed(firmlane-tools ${PROJECT_SOURCE_DIR}/docs/${page}.md ${CMAKE_INSTALL_DATADIR}/doc/firmlane-tools
                          ${page}.md)
endforeach()

# A page that lacks an option was forgotten.
add_test(NAME packaging.man_pages COMMAND ${PROJECT_SOURCE_DIR}/tools/check-man-pages ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
set_tests_properties(packaging.man_pages PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=offscreen)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL firmlane firmlane-tools)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "the Firmlane authors <firmlane@tolvex.example>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.tolvex.example/firmlane")
# Each package has a summary of its own: the first line of its description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_DEBIAN_FIRMLANE_PACKAGE_NAME firmlane)
set(CPACK_DEBIAN_FIRMLANE_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_FIRMLANE_PACKAGE_RECOMMENDS qt6-wayland)
set(CPACK_COMPONENT_FIRMLANE_DESCRIPTION
    "firmware update wizard for Tolvex audio units
It fetches the list of released firmware versions, downloads the
chosen set, reads which firmware a connected unit runs, and writes the
new images into the unit's processors over a serial line.")
set(CPACK_DEBIAN_FIRMLANE-TOOLS_PACKAGE_NAME firmlane-tools)
set(CPACK_DEBIAN_FIRMLANE-TOOLS_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_FIRMLANE-TOOLS_DESCRIPTION
    "console, simulated units and demo of the Firmlane wizard
The console is the firmware update wizard worked by a script over
standard input and output. The simulator is an audio unit at the far
end of a pseudo-terminal, and its maker's web server. The demo shows
the wizard's windows on such a unit.")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
