# vantrel_json: the header-only JSON reader (Debian nlohmann-json3-dev), for the workbench and the tests.
# The cross build may not search /usr/include, where the headers of this machine's C library stand: it sees
# the one folder it needs through a link.
add_library(vantrel_json INTERFACE)
find_path(JSON_INCLUDE nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
if(NOT JSON_INCLUDE)
  message(FATAL_ERROR "nlohmann/json.hpp was not found (Debian package nlohmann-json3-dev)")
endif()
if(CMAKE_CROSSCOMPILING)
  file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/include")
  file(CREATE_LINK "${JSON_INCLUDE}/nlohmann" "${CMAKE_BINARY_DIR}/include/nlohmann" SYMBOLIC)
  target_include_directories(vantrel_json SYSTEM INTERFACE "${CMAKE_BINARY_DIR}/include")
else()
  target_include_directories(vantrel_json SYSTEM INTERFACE "${JSON_INCLUDE}")
endif()
