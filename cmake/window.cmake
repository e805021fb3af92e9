# Vellums.exe: the window as a library (tests use it too), its resources, and the entry point.
enable_language(RC)
set(CMAKE_RC_FLAGS "-c 65001")
add_library(ui STATIC ${ui_sources})
target_link_libraries(ui PUBLIC io comctl32 gdi32 shell32 ole32)
set(resources ${PROJECT_SOURCE_DIR}/ui/resources)
add_library(window_resources OBJECT ${resources}/vellums.rc)
target_include_directories(window_resources PRIVATE ${PROJECT_SOURCE_DIR} ${resources})
set_source_files_properties(${resources}/vellums.rc PROPERTIES
  OBJECT_DEPENDS "${resources}/vellums.ico;${resources}/table.ico;${resources}/vellums.manifest")
add_executable(Vellums WIN32 ui/program.cpp platform/win32/entryPoint.cpp $<TARGET_OBJECTS:window_resources>)
target_link_libraries(Vellums PRIVATE ui)
target_link_options(Vellums PRIVATE -municode)

# Shows the program at work: starts it, imports, searches, saves a picture.
add_executable(showcase tests/windows/showcase.cpp tests/windows/driver.cpp)
target_link_libraries(showcase PRIVATE house_rules gdi32)
target_link_options(showcase PRIVATE -municode)
