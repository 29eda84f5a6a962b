# What docs/dependencies.md lists, as targets: menubar::simdjson, menubar::icu, menubar::plist.
find_package(Threads REQUIRED)

find_package(simdjson REQUIRED)
add_library(menubar_simdjson INTERFACE)
target_link_libraries(menubar_simdjson INTERFACE simdjson::simdjson)
add_library(menubar::simdjson ALIAS menubar_simdjson)

add_library(menubar_icu INTERFACE)
if(APPLE)
  # The system's own ICU, whose symbols carry no version suffix. Its headers are not in the SDK: Homebrew's keg-only
  # icu4c supplies them, and nothing of it is linked.
  find_path(ICU_INCLUDE_DIR unicode/ucal.h HINTS /opt/homebrew/opt/icu4c/include /usr/local/opt/icu4c/include REQUIRED)
  target_include_directories(menubar_icu SYSTEM INTERFACE ${ICU_INCLUDE_DIR})
  target_compile_definitions(menubar_icu INTERFACE U_DISABLE_RENAMING=1)
  target_link_libraries(menubar_icu INTERFACE icucore)
else()
  find_package(ICU REQUIRED COMPONENTS uc i18n data)
  target_link_libraries(menubar_icu INTERFACE ICU::uc ICU::i18n ICU::data)
endif()
add_library(menubar::icu ALIAS menubar_icu)
