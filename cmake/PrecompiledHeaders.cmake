# What most sources read anyway is read once. Each set belongs to one kind of source and holds nothing that its room may not use:
# the logic gets the standard library alone, the windows get Qt's. A source still includes all that it uses; the sanitize preset
# builds without these sets and would find what is missing.
set(standard_headers
    <algorithm> <array> <charconv> <cstdint> <deque> <filesystem> <functional> <map> <memory> <optional> <span> <string>
    <string_view> <utility> <vector>)
set(core_headers ${standard_headers} <QByteArray> <QCoreApplication> <QDir> <QFile> <QJsonDocument> <QJsonObject> <QString> <QTimer>)
set(test_headers <gmock/gmock.h> <gtest/gtest.h>)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # ccache cannot see the set otherwise; and a compiler that starts with a set would collect garbage too early.
  add_compile_options(-fpch-preprocess --param=ggc-min-heapsize=262144 -fPIC)
endif()

# Sources that are to share a set must be compiled with the same flags, so what brings flags stands here too.
function(firmlane_header_set name)
  cmake_parse_arguments(ARG "" "" "HEADERS;USES" ${ARGN})
  set(empty ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp)
  file(GENERATE OUTPUT ${empty} CONTENT "")
  add_library(precompiled_${name} OBJECT ${empty})
  target_link_libraries(precompiled_${name} PRIVATE ${ARG_USES})
  target_precompile_headers(precompiled_${name} PRIVATE ${ARG_HEADERS})
endfunction()

firmlane_header_set(standard HEADERS ${standard_headers})
firmlane_header_set(tests HEADERS ${standard_headers} ${test_headers} USES GTest::gmock)
if(FIRMLANE_QT)
  firmlane_header_set(core HEADERS ${core_headers} USES Qt6::Core)
endif()

# What includes much is compiled several sources at a time: most of its cost is what each source would do once more. Off in the
# sanitize preset too, for the same reason. A source of the logic costs less than half a second and stays alone.
option(FIRMLANE_BATCHES "Compile the tests and the rooms of Qt several sources at a time" ON)
function(firmlane_in_batches target)
  if(FIRMLANE_BATCHES)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 10)
  endif()
endfunction()
