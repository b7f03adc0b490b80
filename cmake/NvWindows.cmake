# The Windows cross build (preset "windows"): no Qt, no benchmarks, no fuzz targets.
# GoogleTest is built from Debian's source package, nlohmann/json is used from the host's
# headers (it is header-only), and every test program runs under wine.
set(CMAKE_CROSSCOMPILING_EMULATOR "${PROJECT_SOURCE_DIR}/cmake/wine-run.sh;${PROJECT_BINARY_DIR}/wineprefix")

set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(gtest_disable_pthreads OFF CACHE BOOL "" FORCE)
add_subdirectory(/usr/src/googletest "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)

# Only the json headers, copied, so that the host's /usr/include never reaches the
# cross compiler's include path.
file(COPY /usr/include/nlohmann DESTINATION "${PROJECT_BINARY_DIR}/host_include")
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
set_target_properties(nlohmann_json::nlohmann_json PROPERTIES
  INTERFACE_INCLUDE_DIRECTORIES "${PROJECT_BINARY_DIR}/host_include")

# Starting wine costs about a second, so each test program runs once as one test rather
# than once per test case. This replaces GoogleTest's discovery for every folder.
include(GoogleTest)
function(gtest_discover_tests target)
  cmake_parse_arguments(D "" "WORKING_DIRECTORY;DISCOVERY_TIMEOUT" "PROPERTIES" ${ARGN})
  if(NOT D_WORKING_DIRECTORY)
    set(D_WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}")
  endif()
  add_test(NAME ${target} COMMAND ${target} --gtest_brief=1
           WORKING_DIRECTORY "${D_WORKING_DIRECTORY}")
  if(D_PROPERTIES)
    set_tests_properties(${target} PROPERTIES ${D_PROPERTIES})
  endif()
endfunction()
