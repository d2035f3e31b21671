# Helpers shared by every folder of the project.

set(ZENTAVIA_WARNINGS -Wall -Wextra -Werror -Wno-missing-field-initializers)
# GCC 12 with optimisation reports std::string copies as overlapping memcpy (GCC bug 105329): off
# in every optimised build type.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$")
  list(APPEND ZENTAVIA_WARNINGS -Wno-restrict)
endif()

# zv_library(<name> [QT] DEPS <targets...>)
# One library a folder: every .cpp of the calling folder is compiled into it.
function(zv_library name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  if(sources)
    add_library(${name} STATIC ${sources} ${headers})
    target_link_libraries(${name} PUBLIC ${ARG_DEPS})
    target_compile_options(${name} PRIVATE ${ZENTAVIA_WARNINGS})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${ARG_DEPS})
    target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
  endif()
endfunction()

# zv_test_suite(<name> DEPS <targets...>)
# One test executable a folder of tests/, registered with CTest.
function(zv_test_suite name)
  cmake_parse_arguments(ARG "QT" "" "DEPS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT sources)
    message(STATUS "Test suite ${name} has no sources yet")
    return()
  endif()
  add_executable(test_${name} ${sources})
  target_link_libraries(test_${name} PRIVATE ${ARG_DEPS} GTest::gmock GTest::gtest_main)
  target_compile_options(test_${name} PRIVATE ${ZENTAVIA_WARNINGS})
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(test_${name} PRIVATE
    ZENTAVIA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    ZENTAVIA_BINARY_DIR="${PROJECT_BINARY_DIR}")
  add_dependencies(test_${name} zentavia_data)
  add_test(NAME ${name} COMMAND test_${name})
  set(environment
    "QT_QPA_PLATFORM=offscreen;ZENTAVIA_HOME=${PROJECT_BINARY_DIR}/bin;ZENTAVIA_SETTINGS=${PROJECT_BINARY_DIR}/test-settings/${name}.ini")
  # A sanitized suite carries its own options, so that a bare ctest behaves as scripts/test:
  # leaks are reported, except those inside the system libraries lsan.supp names.
  if(ZENTAVIA_SANITIZE)
    list(APPEND environment
      "ASAN_OPTIONS=detect_leaks=1:abort_on_error=1"
      "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1"
      "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/scripts/lsan.supp")
  endif()
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment}" TIMEOUT 300)
endfunction()

# Adds every direct subfolder that has a CMakeLists.txt (targets may refer to each other in any order).
function(zv_add_subfolders)
  file(GLOB children RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt)
  foreach(child ${children})
    get_filename_component(dir ${child} DIRECTORY)
    add_subdirectory(${dir})
  endforeach()
endfunction()
