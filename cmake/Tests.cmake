set(GTEST_SOURCE "/usr/src/googletest" CACHE PATH "Source folder of GoogleTest (Debian package googletest)")
if(NOT EXISTS "${GTEST_SOURCE}/CMakeLists.txt")
  message(FATAL_ERROR "GoogleTest was not found in ${GTEST_SOURCE} (Debian package googletest)")
endif()

enable_testing()
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK OFF)
if(WIN32)
  set(gtest_disable_pthreads ON)
endif()
set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
add_subdirectory("${GTEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)

# The tests' own code is not optimised and reads GoogleTest precompiled: most of the time of a full build goes here.
function(vantrel_test_program name)
  target_precompile_headers(${name} PRIVATE <gtest/gtest.h>)
  if(NOT MSVC)
    # The first is what ccache needs to handle a precompiled header.
    target_compile_options(${name} PRIVATE -fpch-preprocess -O0)
  endif()
endfunction()

# --- the logic's tests; the same sources run natively and under Windows ---
file(GLOB_RECURSE unit_sources CONFIGURE_DEPENDS tests/unit/*.cpp)
if(NOT WIN32)
  list(FILTER unit_sources EXCLUDE REGEX "/win/")
endif()
if(unit_sources)
  add_executable(unit_tests ${unit_sources})
  vantrel_test_program(unit_tests)
  # Only where it is read: a path in every command line would keep checkouts from sharing what they compile.
  set_source_files_properties(tests/unit/workbench/formats_test.cpp PROPERTIES
    COMPILE_DEFINITIONS "VANTREL_SOURCE_DIR=\"${CMAKE_SOURCE_DIR}\"" SKIP_PRECOMPILE_HEADERS ON)
  target_include_directories(unit_tests PRIVATE tests)
  target_link_libraries(unit_tests PRIVATE vantrel_logic fake_hosts vantrel_json GTest::gtest GTest::gtest_main)
  if(TARGET workbench_logic)
    target_link_libraries(unit_tests PRIVATE workbench_logic)
  endif()
  if(WIN32)
    # Presentation that needs no window.
    target_sources(unit_tests PRIVATE src/tools/win/library_path.cpp src/entry/win/debug_channel.cpp
      src/tools/win/default_font.cpp src/tools/win/fonts.cpp src/tools/win/help.cpp src/tools/win/options.cpp
      src/tools/win/placement.cpp src/tools/win/scroll_bars.cpp src/tools/win/window.cpp)
    target_link_libraries(unit_tests PRIVATE comctl32 comdlg32 gdi32 htmlhelp user32 shlwapi advapi32)
  endif()
  if(NOT CMAKE_CROSSCOMPILING)
    add_test(NAME unit_tests COMMAND unit_tests)
  endif()
endif()

# --- the real library in a real window; loads the vantrel.dll beside it ---
vantrel_sources(ui_sources tests/ui/*.cpp)
if(WIN32 AND ui_sources AND TARGET vantrel)
  add_executable(ui_tests ${ui_sources})
  vantrel_test_program(ui_tests)
  target_include_directories(ui_tests PRIVATE tests)
  target_link_libraries(ui_tests PRIVATE fake_hosts vantrel_json GTest::gtest GTest::gtest_main
    comctl32 gdi32 user32 uxtheme gdiplus shell32 shlwapi advapi32 ole32 version winspool)
  add_dependencies(ui_tests vantrel fake_libmx fake_libmex)
  if(TARGET workbench_logic)
    target_link_libraries(ui_tests PRIVATE workbench_logic)
  endif()
  if(TARGET vantrel-workbench)
    add_dependencies(ui_tests vantrel-workbench)
  endif()

  # What actions and their frames take in that window: a report for people to read, no test.
  vantrel_sources(ui_bench_sources bench/ui/*.cpp)
  add_executable(ui_bench EXCLUDE_FROM_ALL ${ui_bench_sources} tests/ui/driver.cpp tests/ui/picture_file.cpp)
  target_include_directories(ui_bench PRIVATE tests)
  target_link_libraries(ui_bench PRIVATE fake_hosts GTest::gtest
    comctl32 gdi32 user32 gdiplus shlwapi advapi32 ole32)
  add_dependencies(ui_bench vantrel)
endif()
