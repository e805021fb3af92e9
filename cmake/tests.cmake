# One test program for each folder of tests/.
include(GoogleTest)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
file(GLOB support_sources CONFIGURE_DEPENDS tests/support/*.cpp)
add_library(test_support STATIC ${support_sources})
target_link_libraries(test_support PUBLIC io GTest::gmock)
target_compile_definitions(test_support PUBLIC
  VELLUMS_SOURCE_DIR="${PROJECT_SOURCE_DIR}" VELLUMS_BINARY_DIR="${PROJECT_BINARY_DIR}")
# The tests take longer to compile than to run.
target_compile_options(test_support PUBLIC -O0 -g1)

# Under Windows the notebook's tests have a main of their own, which runs them through the ADO client as
# well, against doubles of the objects that Access brings.
set(notebook_folders store app search maint io)
if(WIN32)
  add_library(notebook_main STATIC tests/ado/client/main.cpp)
  target_link_libraries(notebook_main PUBLIC ado_doubles test_support)
endif()

function(test_folder folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS tests/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${folder}_tests ${sources})
  set(main GTest::gmock_main)
  if(WIN32 AND folder IN_LIST notebook_folders)
    set(main notebook_main)
  endif()
  target_link_libraries(${folder}_tests PRIVATE test_support ${ARGN} ${main})
  if(CMAKE_CROSSCOMPILING)
    # What no system and no code page can change is tried natively, or here in one language alone. The longer
    # tests of the notebook run here through the ADO client, whose doubles answer from the embedded engine.
    if(folder STREQUAL jet)
      set(arguments --gtest_filter=-BTree.*:*CrashTest*:*WhereverTheDiskStops*:*ComeAndGo*)
    endif()
    if(NOT folder MATCHES "^(store|app|search)$")
      add_test(NAME ${folder} COMMAND ${folder}_tests ${arguments})
      set_tests_properties(${folder} PROPERTIES TIMEOUT 300 PASS_REGULAR_EXPRESSION "\\[  PASSED  \\]"
        FAIL_REGULAR_EXPRESSION "\\[  FAILED  \\]")
    endif()
    if(folder MATCHES "^(text|regexp|jet)$")
      set_tests_properties(${folder} PROPERTIES LABELS english)
    endif()
    if(main STREQUAL notebook_main)
      add_test(NAME ${folder}_ado COMMAND ${folder}_tests --client=ado)
      set_tests_properties(${folder}_ado PROPERTIES TIMEOUT 300 RESOURCE_LOCK classes LABELS "ado;chinese"
        PASS_REGULAR_EXPRESSION "\\[  PASSED  \\]" FAIL_REGULAR_EXPRESSION "\\[  FAILED  \\]")
    endif()
  else()
    gtest_discover_tests(${folder}_tests PROPERTIES TIMEOUT 300)
  endif()
endfunction()

foreach(folder text platform formats regexp jet store app search maint io cli)
  test_folder(${folder})
endforeach()
# Replaces operator new, so it is a program of its own.
if(NOT WIN32)
  test_folder(memory)
endif()

# The ADO client itself, and the routine for late-bound COM.
if(WIN32)
  file(GLOB ado_tests CONFIGURE_DEPENDS tests/ado/*Test.cpp)
  add_executable(ado_tests ${ado_tests})
  target_link_libraries(ado_tests PRIVATE ado_doubles test_support GTest::gmock_main)
  add_test(NAME ado COMMAND ado_tests)
  set_tests_properties(ado PROPERTIES TIMEOUT 300 RESOURCE_LOCK classes LABELS ado
    PASS_REGULAR_EXPRESSION "\\[  PASSED  \\]" FAIL_REGULAR_EXPRESSION "\\[  FAILED  \\]")
endif()

# What independent readers of Access files find in ours and in those of other programs. Skipped where a
# reader or the files are absent.
if(NOT CMAKE_CROSSCOMPILING)
  find_program(VELLUMS_NODE node)
  foreach(program dumpDatabase writeSamples)
    add_executable(${program} tests/readers/${program}.cpp)
    target_link_libraries(${program} PRIVATE jet)
  endforeach()
  target_sources(dumpDatabase PRIVATE tests/readers/jsonLine.cpp)
  foreach(kind mdb accdb)
    add_test(NAME readers.write_${kind} COMMAND writeSamples ${PROJECT_BINARY_DIR}/samples.${kind})
    set_tests_properties(readers.write_${kind} PROPERTIES TIMEOUT 300 FIXTURES_SETUP reader_samples)
  endforeach()
  foreach(reader mdb-reader mdbtools)
    foreach(files samples fixtures)
      if(files STREQUAL samples)
        set(places ${PROJECT_BINARY_DIR}/samples.mdb ${PROJECT_BINARY_DIR}/samples.accdb)
      else()
        set(places fixtures:${PROJECT_SOURCE_DIR}/../shared/fixtures)
      endif()
      set(name readers.${reader}_${files})
      if(VELLUMS_NODE)
        add_test(NAME ${name} COMMAND ${VELLUMS_NODE} ${PROJECT_SOURCE_DIR}/tests/readers/compareReaders.mjs
          ${reader} $<TARGET_FILE:dumpDatabase> ${PROJECT_SOURCE_DIR}/build/readers ${places})
      else()
        add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo "skipped: node is not installed")
      endif()
      set_tests_properties(${name} PROPERTIES TIMEOUT 600 SKIP_RETURN_CODE 77
        SKIP_REGULAR_EXPRESSION "^skipped: ")
      if(files STREQUAL samples)
        set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED reader_samples)
      endif()
    endforeach()
  endforeach()
endif()

# The real window, on the screen that the test run provides.
if(WIN32 AND TARGET Vellums)
  file(GLOB window_tests CONFIGURE_DEPENDS tests/windows/*Test.cpp)
  add_executable(windows_tests ${window_tests} tests/windows/driver.cpp tests/windows/windowProbe.cpp
    tests/windows/windowThread.cpp tests/regexp/reference.cpp)
  target_link_libraries(windows_tests PRIVATE ui ntdll GTest::gmock_main)
  add_dependencies(windows_tests Vellums)
  add_test(NAME windows COMMAND windows_tests)
  set_tests_properties(windows PROPERTIES TIMEOUT 900 COST 1000 RESOURCE_LOCK "screen;classes"
    PASS_REGULAR_EXPRESSION "\\[  PASSED  \\]" FAIL_REGULAR_EXPRESSION "\\[  FAILED  \\]")
endif()
if(TARGET cli_tests)
  add_dependencies(cli_tests vellums-cli)
endif()
if(NOT CMAKE_CROSSCOMPILING)
  include(cmake/corpusTests.cmake)
  include(cmake/fuzz.cmake)
endif()
