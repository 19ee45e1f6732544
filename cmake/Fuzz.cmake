# One program for each tests/fuzz/<Name>Fuzz.cpp. Its seeds are the files of tests/fuzz/corpus/<Name>Fuzz/.

velto_sources(fuzzers FOLDERS tests/fuzz)
list(FILTER fuzzers INCLUDE REGEX "Fuzz\\.cpp$")
foreach(source IN LISTS fuzzers)
  get_filename_component(name "${source}" NAME_WE)
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE velto_launch velto_handoff)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${VELTO_OUTPUT_DIR}/bin")
endforeach()
