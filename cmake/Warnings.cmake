# One interface target carries the warnings; every target of ours links it. They are errors where the presets build; who
# builds a release with another compiler, as a package manager does, is not held up by its opinions.
option(MENUBAR_WARNINGS_ARE_ERRORS "treat warnings as errors" OFF)
set(as_errors $<$<BOOL:${MENUBAR_WARNINGS_ARE_ERRORS}>:-Werror>)
add_library(menubar_warnings INTERFACE)
target_compile_options(
  menubar_warnings
  INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wsign-conversion
            -Wnon-virtual-dtor
            -Wold-style-cast
            -Woverloaded-virtual
            ${as_errors}>
            $<$<COMPILE_LANGUAGE:OBJCXX>:-Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            ${as_errors}>)
# g++ 12 mistakes members of a moved-from std::variant for uninitialised ones, and blames us for what ICU's macros
# convert; of our own conversions clang tells.
target_compile_options(
  menubar_warnings
  INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized
            -Wno-conversion
            -Wno-sign-conversion
            -Wno-old-style-cast>)
# GNUstep declares the optional methods of some delegate protocols as required, and categories of ours replace methods
# of its classes on purpose.
if(NOT APPLE)
  target_compile_options(
    menubar_warnings
    INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:-Wno-protocol -Wno-objc-protocol-method-implementation>)
endif()
