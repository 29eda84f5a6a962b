# What docs/dependencies.md lists, as targets: menubar::simdjson, menubar::icu, menubar::plist.
find_package(Threads REQUIRED)

add_library(menubar_simdjson INTERFACE)
if(APPLE)
  # The static library: programs that people get must not need Homebrew. It was built with threads.
  find_library(SIMDJSON_LIBRARY NAMES libsimdjson.a HINTS /opt/homebrew/opt/simdjson/lib /usr/local/opt/simdjson/lib
               REQUIRED)
  find_path(SIMDJSON_INCLUDE_DIR simdjson.h HINTS /opt/homebrew/opt/simdjson/include /usr/local/opt/simdjson/include
            REQUIRED)
  target_include_directories(menubar_simdjson SYSTEM INTERFACE ${SIMDJSON_INCLUDE_DIR})
  target_compile_definitions(menubar_simdjson INTERFACE SIMDJSON_THREADS_ENABLED=1)
  target_link_libraries(menubar_simdjson INTERFACE ${SIMDJSON_LIBRARY})
else()
  find_package(simdjson REQUIRED)
  target_link_libraries(menubar_simdjson INTERFACE simdjson::simdjson)
endif()
add_library(menubar::simdjson ALIAS menubar_simdjson)

add_library(menubar_icu INTERFACE)
if(APPLE)
  # The system's own ICU, whose symbols carry no version suffix. Its headers are not in the SDK: Homebrew's keg-only
  # icu4c supplies them, and nothing of it is linked.
  find_path(ICU_INCLUDE_DIR unicode/uregex.h HINTS /opt/homebrew/opt/icu4c/include /usr/local/opt/icu4c/include REQUIRED)
  target_include_directories(menubar_icu SYSTEM INTERFACE ${ICU_INCLUDE_DIR})
  target_compile_definitions(menubar_icu INTERFACE U_DISABLE_RENAMING=1)
  target_link_libraries(menubar_icu INTERFACE icucore)
else()
  find_package(ICU REQUIRED COMPONENTS uc i18n data)
  target_link_libraries(menubar_icu INTERFACE ICU::uc ICU::i18n ICU::data)
endif()
add_library(menubar::icu ALIAS menubar_icu)

# The library's own pkg-config file does not say where it is linked statically; macOS programs must not need Homebrew.
if(APPLE)
  find_library(PLIST_LIBRARY NAMES libplist-2.0.a HINTS /opt/homebrew/opt/libplist/lib /usr/local/opt/libplist/lib
               REQUIRED)
else()
  find_library(PLIST_LIBRARY NAMES plist-2.0 REQUIRED)
endif()
find_path(PLIST_INCLUDE_DIR plist/plist.h HINTS /opt/homebrew/opt/libplist/include /usr/local/opt/libplist/include
          REQUIRED)
add_library(menubar_plist INTERFACE)
target_include_directories(menubar_plist SYSTEM INTERFACE ${PLIST_INCLUDE_DIR})
target_link_libraries(menubar_plist INTERFACE ${PLIST_LIBRARY})
add_library(menubar::plist ALIAS menubar_plist)
