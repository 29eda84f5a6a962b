# One interface target carries the warnings; every target of ours links it.
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
            -Werror>
            $<$<COMPILE_LANGUAGE:OBJCXX>:-Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Werror>)
# g++ 12 mistakes members of a moved-from std::variant for uninitialised ones.
target_compile_options(menubar_warnings
                       INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
# GNUstep declares the optional methods of some delegate protocols as required, and categories of ours replace methods
# of its classes on purpose.
if(NOT APPLE)
  target_compile_options(
    menubar_warnings
    INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:-Wno-protocol -Wno-objc-protocol-method-implementation>)
endif()
