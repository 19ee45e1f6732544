# The libraries that Velto stands on, all from Debian's packages (script/bootstrap installs them).

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
set(Boost_USE_STATIC_LIBS ON)
find_package(Boost 1.81 REQUIRED COMPONENTS url)
pkg_check_modules(icu REQUIRED IMPORTED_TARGET icu-uc icu-i18n)
pkg_check_modules(xml REQUIRED IMPORTED_TARGET libxml-2.0)
pkg_check_modules(simdjson REQUIRED IMPORTED_TARGET simdjson)
pkg_check_modules(sqlite REQUIRED IMPORTED_TARGET sqlite3)

if(NOT VELTO_FUZZ)
  pkg_check_modules(cairomm REQUIRED IMPORTED_TARGET cairomm-1.0)
  pkg_check_modules(pangocairo REQUIRED IMPORTED_TARGET pangocairo)
  pkg_check_modules(gtk REQUIRED IMPORTED_TARGET gtk+-3.0)
  pkg_check_modules(webkit REQUIRED IMPORTED_TARGET webkit2gtk-4.1)
  pkg_check_modules(x11 REQUIRED IMPORTED_TARGET x11 xrandr)
endif()
