# Takes out of a list of sources what belongs to another system: NAME_unix.cpp and NAME_windows.cpp stand behind one header.
function(firmlane_keep_own variable)
  set(foreign "_windows(_test)?\\.cpp$")
  if(WIN32)
    set(foreign "_unix(_test)?\\.cpp$")
  endif()
  list(FILTER ${variable} EXCLUDE REGEX ${foreign})
  set(${variable} ${${variable}} PARENT_SCOPE)
endfunction()

# A room is a folder of sources that becomes one library; it may use only the rooms named behind USES. READS names its set of
# precompiled headers.
function(firmlane_room name folder)
  cmake_parse_arguments(ARG "" "READS" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.h)
  firmlane_keep_own(sources)
  if(NOT sources) # a room that nobody has moved into yet
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${ARG_USES})
    return()
  endif()
  if(NOT ARG_READS)
    set(ARG_READS standard)
  endif()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/simulator)
  target_link_libraries(${name} PUBLIC ${ARG_USES})
  target_precompile_headers(${name} REUSE_FROM precompiled_${ARG_READS})
  firmlane_in_batches(${name})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
endfunction()

# A program of its own, whose sources are all but in rooms.
function(firmlane_program name source)
  cmake_parse_arguments(ARG "" "READS" "USES" ${ARGN})
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE ${ARG_USES})
  if(NOT WIN32) # there a program with windows has a flag of its own
    target_precompile_headers(${name} REUSE_FROM precompiled_${ARG_READS})
  endif()
endfunction()

# The tests of one subsystem: every source of a folder below tests/ in one program.
function(firmlane_tests folder)
  cmake_parse_arguments(ARG "" "COST" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  firmlane_keep_own(sources)
  if(NOT sources)
    return()
  endif()
  if(NOT ARG_COST) # the dearer come first
    set(ARG_COST 0)
  endif()
  string(REPLACE "/" "_" name ${folder})
  add_executable(test_${name} ${sources})
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support)
  target_link_libraries(test_${name} PRIVATE ${ARG_USES} test_support GTest::gmock GTest::gtest_main ${tests_platform})
  target_precompile_headers(test_${name} REUSE_FROM precompiled_tests)
  firmlane_in_batches(test_${name})
  if(CMAKE_CROSSCOMPILING) # one run of the other system's programs is dear
    add_test(NAME ${folder} COMMAND test_${name})
    return()
  endif()
  gtest_discover_tests(test_${name} TEST_PREFIX ${folder}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120
                       COST ${ARG_COST})
endfunction()
