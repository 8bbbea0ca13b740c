# kordel_add_test(NAME SOURCES ... LIBS ...)
# One GoogleTest binary per library, registered with CTest. The shared main
# sets QT_QPA_PLATFORM=offscreen when unset and starts a QApplication.
function(kordel_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE kordel_testsupport ${ARG_LIBS} GTest::gtest GTest::gmock)
  gtest_discover_tests(${name}
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;KORDEL_SOURCE_DIR=${CMAKE_SOURCE_DIR}"
    DISCOVERY_TIMEOUT 60)
endfunction()
