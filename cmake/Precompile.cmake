# Most of a source's compile time goes into a few headers of Qt and of the tests' library. Where
# QUORVANE_PRECOMPILE is on they are compiled once for each of three sets. A set is a library of its
# own without definitions: the compiler takes no precompiled header that was made with definitions
# which a source does not have.

set(QUORVANE_CORE_HEADERS
  <QCoreApplication> <QDateTime> <QDir> <QFile> <QHash> <QObject> <QString> <QStringList> <QVariant>
  <QVariantMap> <chrono> <functional> <map> <memory> <optional> <string> <utility> <vector>)
set(QUORVANE_BUS_HEADERS
  <QDBusConnection> <QDBusMessage> <QDBusPendingCallWatcher> <QDBusPendingReply>)
set(QUORVANE_TEST_HEADERS <gmock/gmock.h> <gtest/gtest.h>)

function(quorvane_header_set name libraries)
  set(source ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp)
  if(NOT EXISTS ${source})
    file(WRITE ${source} "// Holds nothing: its target's precompiled headers are what counts.\n")
  endif()
  add_library(${name} OBJECT ${source})
  target_link_libraries(${name} PRIVATE quorvane_compiler ${libraries})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

if(QUORVANE_PRECOMPILE)
  quorvane_header_set(quorvane_core_headers Qt6::Core ${QUORVANE_CORE_HEADERS})
  quorvane_header_set(quorvane_bus_headers "Qt6::Core;Qt6::DBus"
    ${QUORVANE_CORE_HEADERS} ${QUORVANE_BUS_HEADERS})
  if(QUORVANE_TESTS)
    quorvane_header_set(quorvane_test_headers "Qt6::Core;Qt6::DBus;GTest::gtest;GTest::gmock"
      ${QUORVANE_CORE_HEADERS} ${QUORVANE_BUS_HEADERS} ${QUORVANE_TEST_HEADERS})
    quorvane_header_set(quorvane_core_test_headers "Qt6::Core;GTest::gtest;GTest::gmock"
      ${QUORVANE_CORE_HEADERS} ${QUORVANE_TEST_HEADERS})
  endif()
endif()

# quorvane_precompile(TARGET core|bus|test|core_test): which set the target's sources begin with.
function(quorvane_precompile target set)
  if(QUORVANE_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM quorvane_${set}_headers)
  endif()
endfunction()
