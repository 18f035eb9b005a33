# An application bundle. Written without a Mac: not tried.
find_program(PNG2ICNS NAMES png2icns)
set_target_properties(
  firmlane
  PROPERTIES MACOSX_BUNDLE ON
             MACOSX_BUNDLE_INFO_PLIST ${FIRMLANE_PACKAGING}/macos/Info.plist.in
             MACOSX_BUNDLE_BUNDLE_NAME Firmlane
             MACOSX_BUNDLE_GUI_IDENTIFIER example.tolvex.firmlane
             MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
             MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
             MACOSX_BUNDLE_COPYRIGHT "Copyright 2026 the Firmlane authors")
if(PNG2ICNS AND TARGET icons)
  set(icns ${CMAKE_CURRENT_BINARY_DIR}/firmlane.icns)
  # The format has no 24 and no 64.
  set(icon_pngs ${pngs})
  list(FILTER icon_pngs EXCLUDE REGEX "/(24|64)\\.png$")
  add_custom_command(
    OUTPUT ${icns}
    COMMAND ${PNG2ICNS} ${icns} ${icon_pngs}
    DEPENDS ${pngs}
    VERBATIM)
  add_custom_target(icns ALL DEPENDS ${icns})
  add_custom_command(
    TARGET firmlane
    POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy ${icns} $<TARGET_BUNDLE_CONTENT_DIR:firmlane>/Resources/firmlane.icns
    VERBATIM)
  add_dependencies(firmlane icns)
  set_target_properties(firmlane PROPERTIES MACOSX_BUNDLE_ICON_FILE firmlane.icns)
endif()
install(TARGETS firmlane BUNDLE DESTINATION .)
# Qt's libraries go into the bundle. That breaks the linker's own signature, without which a Mac with an Apple processor starts
# nothing; a signature of no identity ("-") will do for oneself, and whoever gives the bundle away names his own.
set(FIRMLANE_SIGNER - CACHE STRING "The identity that signs the bundle for macOS")
qt_generate_deploy_app_script(TARGET firmlane FILENAME_VARIABLE deploy NO_UNSUPPORTED_PLATFORM_ERROR)
install(SCRIPT ${deploy})
install(
  CODE "execute_process(COMMAND codesign --force --deep --sign \"${FIRMLANE_SIGNER}\"
                        \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/firmlane.app\" COMMAND_ERROR_IS_FATAL ANY)")
install(TARGETS firmlane-console firmlane-simulator firmlane-demo RUNTIME DESTINATION bin)
set(CPACK_GENERATOR DragNDrop)
