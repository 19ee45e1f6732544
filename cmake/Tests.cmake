# Unit tests (no display), the contract that both backends keep, and the benchmarks.

enable_testing()
find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)

# velto_test_program(<name> SOURCES <file>... LINK <library>...)
# Part of the default target only where the preset asks for tests; always there to be asked for by name.
function(velto_test_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
  if(NOT arg_SOURCES)
    return()
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINK})
  target_compile_definitions(${name} PRIVATE
    VELTO_SOURCE_DIR="${CMAKE_SOURCE_DIR}" VELTO_BIN_DIR="${VELTO_OUTPUT_DIR}/bin")
  # The sources of tests are long to compile and short to run, so they do without the optimiser, and without those checks
  # of the sanitizers whose faults the address sanitizer shows too. What is tested keeps them all.
  target_compile_options(${name} PRIVATE -O0 -U_FORTIFY_SOURCE)
  if(VELTO_SANITIZE)
    target_compile_options(${name} PRIVATE -fno-sanitize=null,alignment,vptr,object-size)
  endif()
  target_precompile_headers(${name} PRIVATE <gmock/gmock.h>)
  if(NOT VELTO_TESTS)
    set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
  endif()
endfunction()

velto_sources(unit TREES tests)
list(FILTER unit EXCLUDE REGEX "^tests/(desktop|fuzz|command|contract)/")
velto_test_program(velto_tests SOURCES ${unit}
                   LINK velto_core velto_headless velto_handoff GTest::gmock GTest::gtest_main)
if(TARGET velto_tests)
  if(TARGET velto-open)
    add_dependencies(velto_tests velto-open)
  endif()
  add_test(NAME unit COMMAND velto_tests)
endif()

# The same sources twice, each linked with one backend only.
velto_sources(contract TREES tests/contract)
foreach(backend headless gtk)
  set(name velto_contract_${backend})
  velto_test_program(${name} SOURCES ${contract} LINK velto_${backend} GTest::gmock GTest::gtest_main)
  if(TARGET ${name})
    string(TOUPPER ${backend} upper)
    target_compile_definitions(${name} PRIVATE VELTO_CONTRACT_${upper})
  endif()
endforeach()
if(TARGET velto_contract_headless)
  add_test(NAME contract_headless COMMAND velto_contract_headless)
  add_test(NAME contract_gtk COMMAND "${CMAKE_SOURCE_DIR}/script/display" $<TARGET_FILE:velto_contract_gtk>)
endif()

velto_sources(measures FOLDERS benchmarks)
if(measures)
  add_executable(velto_benchmarks EXCLUDE_FROM_ALL ${measures})
  target_link_libraries(velto_benchmarks PRIVATE
    velto_core velto_headless velto_handoff benchmark::benchmark benchmark::benchmark_main)
endif()
