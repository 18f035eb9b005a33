# What most sources read anyway is read once. Each set belongs to one kind of source and holds nothing that its room may not use:
# the logic gets the standard library alone, the windows get Qt's. A source still includes all that it uses; the sanitize preset
# builds without these sets and would find what is missing.
set(standard_headers
    <algorithm> <array> <charconv> <cstdint> <deque> <filesystem> <functional> <map> <memory> <optional> <span> <string>
    <string_view> <utility> <vector>)
set(core_headers ${standard_headers} <QByteArray> <QCoreApplication> <QDir> <QFile> <QJsonDocument> <QJsonObject> <QString> <QTimer>)
set(test_headers <gmock/gmock.h> <gtest/gtest.h>)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  if(NOT CMAKE_DISABLE_PRECOMPILE_HEADERS) # clang-tidy, which reads that build's commands, knows neither of them
    # ccache cannot see the set otherwise; and a compiler that starts with a set would collect garbage too early.
    add_compile_options(-fpch-preprocess --param=ggc-min-heapsize=262144)
  endif()
  if(NOT WIN32) # what Qt asks for, so that sources with and without it can share a set
    add_compile_options(-fPIC)
  endif()
endif()
if(WIN32 AND FIRMLANE_QT) # there it defines what the tests' set reads
  set(tests_platform Qt6::Platform)
endif()

# Sources that are to share a set must be compiled with the same flags, so what brings flags stands here too. Each set takes the
# time of some ten sources to make: one more is worth it only for more than that.
function(firmlane_header_set name)
  cmake_parse_arguments(ARG "" "" "HEADERS;USES" ${ARGN})
  set(empty ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp)
  file(GENERATE OUTPUT ${empty} CONTENT "")
  add_library(precompiled_${name} OBJECT ${empty})
  target_link_libraries(precompiled_${name} PRIVATE ${ARG_USES})
  target_precompile_headers(precompiled_${name} PRIVATE ${ARG_HEADERS})
endfunction()

firmlane_header_set(standard HEADERS ${standard_headers})
firmlane_header_set(tests HEADERS ${standard_headers} ${test_headers} USES GTest::gmock ${tests_platform})
if(FIRMLANE_QT)
  firmlane_header_set(core HEADERS ${core_headers} USES Qt6::Core)
endif()

# A folder is compiled fifteen sources at a time: most of the cost is what each source would do once more. Off in the sanitize preset
# too, for the same reason.
option(FIRMLANE_BATCHES "Compile several sources of a folder at a time" ON)
function(firmlane_in_batches target)
  if(FIRMLANE_BATCHES)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 15)
  endif()
endfunction()
