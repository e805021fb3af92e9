# One test program for each folder of tests/.
include(GoogleTest)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
file(GLOB support_sources CONFIGURE_DEPENDS tests/support/*.cpp)
if(support_sources)
  add_library(test_support STATIC ${support_sources})
  target_link_libraries(test_support PUBLIC io)
else()
  add_library(test_support INTERFACE)
  target_link_libraries(test_support INTERFACE io)
endif()

function(test_folder folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS tests/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${folder}_tests ${sources})
  target_compile_definitions(${folder}_tests PRIVATE
    VELLUMS_SOURCE_DIR="${PROJECT_SOURCE_DIR}" VELLUMS_BINARY_DIR="${PROJECT_BINARY_DIR}")
  target_link_libraries(${folder}_tests PRIVATE test_support ${ARGN} GTest::gmock_main)
  if(CMAKE_CROSSCOMPILING)
    add_test(NAME ${folder} COMMAND ${folder}_tests)
    set_tests_properties(${folder} PROPERTIES TIMEOUT 300 PASS_REGULAR_EXPRESSION "\\[  PASSED  \\]"
      FAIL_REGULAR_EXPRESSION "\\[  FAILED  \\]")
  else()
    gtest_discover_tests(${folder}_tests PROPERTIES TIMEOUT 300)
  endif()
endfunction()

foreach(folder platform jet store app search maint io cli)
  test_folder(${folder})
endforeach()

# The real window, on the screen that the test run provides.
if(WIN32 AND TARGET Vellums)
  file(GLOB window_tests CONFIGURE_DEPENDS tests/windows/*Test.cpp)
  add_executable(windows_tests ${window_tests} tests/windows/driver.cpp)
  target_link_libraries(windows_tests PRIVATE ui GTest::gmock_main)
  add_dependencies(windows_tests Vellums)
  add_test(NAME windows COMMAND windows_tests)
  set_tests_properties(windows PROPERTIES TIMEOUT 300 RESOURCE_LOCK screen
    PASS_REGULAR_EXPRESSION "\\[  PASSED  \\]" FAIL_REGULAR_EXPRESSION "\\[  FAILED  \\]")
endif()
