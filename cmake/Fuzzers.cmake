# One program for each file in tests/fuzz: number_text.cpp becomes fuzz_number_text.
vantrel_sources(fuzz_sources tests/fuzz/*.cpp)
foreach(source IN LISTS fuzz_sources)
  get_filename_component(name "${source}" NAME_WE)
  string(REGEX REPLACE "^fuzz_|_fuzz$" "" name "${name}")
  add_executable(fuzz_${name} "${source}")
  target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
  target_link_libraries(fuzz_${name} PRIVATE vantrel_logic fake_hosts)
endforeach()
