# One static library per layer folder. Sources are every *.cpp of the folder
# (sub-folders included) except *_test.cpp, which make up the layer's GoogleTest
# executable. Layers name the layers they use with DEPS. A file named *_win.cpp is built
# only for Windows, *_posix.cpp only elsewhere: the two implementations of one header.
if(NOT COMMAND gtest_discover_tests)  # the Windows build has its own
  include(GoogleTest)
endif()

function(nv_layer name)
  cmake_parse_arguments(L "" "" "DEPS;TEST_DEPS" ${ARGN})
  file(GLOB_RECURSE all_srcs CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  set(lib_srcs "")
  set(test_srcs "")
  if(WIN32)
    list(FILTER all_srcs EXCLUDE REGEX "_posix(_test)?\\.cpp$")
  else()
    list(FILTER all_srcs EXCLUDE REGEX "_win(_test)?\\.cpp$")
  endif()
  foreach(f IN LISTS all_srcs)
    if(f MATCHES "_test\\.cpp$")
      list(APPEND test_srcs "${f}")
    else()
      list(APPEND lib_srcs "${f}")
    endif()
  endforeach()

  if(lib_srcs)
    add_library(nv_${name} STATIC ${lib_srcs})
    target_include_directories(nv_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(nv_${name} PUBLIC ${L_DEPS} nv_options)
  else()
    add_library(nv_${name} INTERFACE)
    target_include_directories(nv_${name} INTERFACE "${PROJECT_SOURCE_DIR}")
    target_link_libraries(nv_${name} INTERFACE ${L_DEPS} nv_options)
  endif()

  if(test_srcs)
    add_executable(nv_${name}_tests ${test_srcs})
    target_link_libraries(nv_${name}_tests PRIVATE nv_${name} ${L_TEST_DEPS} GTest::gtest GTest::gtest_main)
    gtest_discover_tests(nv_${name}_tests
      WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
      PROPERTIES ENVIRONMENT "NV_TEST_BIN_DIR=${PROJECT_BINARY_DIR}"
      DISCOVERY_TIMEOUT 120)
  endif()
endfunction()
