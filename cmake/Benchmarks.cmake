vantrel_sources(bench_sources bench/*.cpp)
# Figures taken under a sanitizer mean nothing.
if(NOT bench_sources OR VANTREL_SANITIZE)
  return()
endif()

if(CMAKE_CROSSCOMPILING)
  # No ready-made package exists for Windows; scripts/setup.sh fetches the source package of the native one.
  set(BENCHMARK_SOURCE "${CMAKE_SOURCE_DIR}/build/third_party/benchmark" CACHE PATH
    "Source folder of Google Benchmark")
  if(NOT EXISTS "${BENCHMARK_SOURCE}/CMakeLists.txt")
    message(STATUS "No Google Benchmark in ${BENCHMARK_SOURCE}: this build goes without the benchmarks")
    return()
  endif()
  # Its own CMake files find things out by running programs, which a cross build cannot.
  file(GLOB benchmark_files "${BENCHMARK_SOURCE}/src/*.cc")
  add_library(benchmark STATIC EXCLUDE_FROM_ALL ${benchmark_files})
  target_include_directories(benchmark SYSTEM PUBLIC "${BENCHMARK_SOURCE}/include")
  target_compile_definitions(benchmark PUBLIC BENCHMARK_STATIC_DEFINE PRIVATE HAVE_STD_REGEX HAVE_STEADY_CLOCK)
  set(benchmark_libraries benchmark shlwapi)
else()
  find_package(benchmark QUIET)
  if(NOT benchmark_FOUND)
    message(STATUS "No Google Benchmark (Debian package libbenchmark-dev): this build goes without the benchmarks")
    return()
  endif()
  set(benchmark_libraries benchmark::benchmark benchmark::benchmark_main)
endif()

add_executable(bench ${bench_sources})
target_include_directories(bench PRIVATE tests)
target_link_libraries(bench PRIVATE vantrel_logic fake_hosts ${benchmark_libraries})
