# Language, warnings, sanitizers, linter and compiler cache for every target.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

include_directories("${CMAKE_SOURCE_DIR}")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")  # clang builds the fuzz targets only; g++ is the judge
  add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Werror)
endif()
add_compile_options(-fstack-protector-strong)
add_link_options(-Wl,--as-needed)

if(VELTO_SANITIZE OR VELTO_FUZZ)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  add_link_options(-fsanitize=address,undefined)
else()
  add_compile_definitions(_FORTIFY_SOURCE=2)
endif()
if(VELTO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  # The sloppiness lets it keep what was compiled with a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros;${CCACHE}")
endif()

# What the linter runs as, for the targets that want it. It reads the command line of g++, whose name for the
# language its clang does not know yet. Its own compiler warnings are not the point: g++ has given those.
if(VELTO_TIDY)
  find_program(CLANG_TIDY clang-tidy REQUIRED)
  set(VELTO_TIDY_COMMAND "${CLANG_TIDY};--quiet;--extra-arg=-std=c++2b;--extra-arg=-Wno-everything")
endif()
