# One program for each tests/fuzz/<Name>Fuzz.cpp. Its seeds are the files of tests/fuzz/corpus/<Name>Fuzz/.

# What of layouts/ reads texts from outside; it stands on the foundation and the launch grammar alone.
set(layout_texts
    layouts/Layout.cpp layouts/LayoutFormat.cpp layouts/LayoutURLCommand.cpp layouts/VeltoSession.cpp)
add_library(velto_layout_texts STATIC ${layout_texts})
target_link_libraries(velto_layout_texts PUBLIC velto_launch)

# The same of browsing/.
set(browsing_texts
    browsing/history/HistoryFormat.cpp browsing/history/HistoryPage.cpp browsing/safari/CookieKey.cpp browsing/safari/SafariBinaryCookies.cpp
    browsing/safari/SafariSiteFilter.cpp)
add_library(velto_browsing_texts STATIC ${browsing_texts})
target_link_libraries(velto_browsing_texts PUBLIC velto_foundation)

velto_sources(fuzzers FOLDERS tests/fuzz)
list(FILTER fuzzers INCLUDE REGEX "Fuzz\\.cpp$")
foreach(source IN LISTS fuzzers)
  get_filename_component(name "${source}" NAME_WE)
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE velto_layout_texts velto_browsing_texts velto_launch velto_handoff)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${VELTO_OUTPUT_DIR}/bin")
endforeach()
