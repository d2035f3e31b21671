# zv_fuzz_target(<name> DEPS <libraries...>): one libFuzzer executable from <name>.cpp.
# The fuzz build compiles everything with -fsanitize=fuzzer-no-link,address (see scripts/test);
# only the executables link the fuzzer's main.
function(zv_fuzz_target name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  add_executable(${name} ${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE ${ARG_DEPS})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/fuzz)
  target_compile_options(${name} PRIVATE ${ZENTAVIA_WARNINGS} -fsanitize=fuzzer,address)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer,address)
  set_property(GLOBAL APPEND PROPERTY ZENTAVIA_FUZZ_TARGETS ${name})
endfunction()
