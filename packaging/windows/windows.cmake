# What a Windows program carries in itself: icon, version, manifest. tools/package-windows makes the packages.
find_program(ICOTOOL icotool)
enable_language(RC)
if(ICOTOOL AND TARGET icons)
  set(FIRMLANE_ICO ${CMAKE_CURRENT_BINARY_DIR}/firmlane.ico)
  add_custom_command(
    OUTPUT ${FIRMLANE_ICO}
    COMMAND ${ICOTOOL} -c -o ${FIRMLANE_ICO} ${pngs}
    DEPENDS ${pngs}
    VERBATIM)
  add_custom_target(ico DEPENDS ${FIRMLANE_ICO})
else()
  message(FATAL_ERROR "A program for Windows needs its icon: install what packages-windows.txt names")
endif()

function(firmlane_resources FIRMLANE_PROGRAM_NAME FIRMLANE_PROGRAM_DESCRIPTION)
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${FIRMLANE_PROGRAM_NAME}.rc)
  configure_file(${FIRMLANE_PACKAGING}/windows/program.rc.in ${resources} @ONLY)
  # A library of its own, since a source cannot be added to a program from another folder's custom command.
  add_library(${FIRMLANE_PROGRAM_NAME}_resources OBJECT ${resources})
  add_dependencies(${FIRMLANE_PROGRAM_NAME}_resources ico)
  set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS ${FIRMLANE_PACKAGING}/windows/program.manifest)
  target_link_libraries(${FIRMLANE_PROGRAM_NAME} PRIVATE $<TARGET_OBJECTS:${FIRMLANE_PROGRAM_NAME}_resources>)
  add_dependencies(${FIRMLANE_PROGRAM_NAME} ${FIRMLANE_PROGRAM_NAME}_resources)
endfunction()

firmlane_resources(firmlane "${PROJECT_DESCRIPTION}")
firmlane_resources(firmlane-console "Firmlane without a window, for scripts")
firmlane_resources(firmlane-simulator "Simulated units' images and their maker's web server")
firmlane_resources(firmlane-demo "Firmlane on a simulated unit")
