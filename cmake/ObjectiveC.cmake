# menubar::objc carries what an Objective-C++ source needs on either platform.
add_library(menubar_objc INTERFACE)
if(APPLE)
  target_compile_options(menubar_objc INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:-fno-objc-arc>)
  target_link_libraries(menubar_objc INTERFACE "-framework Foundation" "-framework AppKit" "-framework CoreGraphics")
else()
  # GNUstep on the GCC runtime. The GCC include folder comes last (-idirafter): only objc/ is wanted from it, clang's
  # own builtin headers must stay first.
  file(GLOB MENUBAR_GCC_INCLUDES /usr/lib/gcc/*-linux-gnu/12/include)
  target_compile_options(
    menubar_objc
    INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gcc
              -fblocks
              -fexceptions
              -fobjc-exceptions
              -fconstant-string-class=NSConstantString
              -fno-strict-aliasing
              -idirafter${MENUBAR_GCC_INCLUDES}>)
  target_compile_definitions(
    menubar_objc INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:_NATIVE_OBJC_EXCEPTIONS> GNUSTEP GNUSTEP_BASE_LIBRARY=1
                           GNU_GUI_LIBRARY=1 GNU_RUNTIME=1)
  target_include_directories(menubar_objc SYSTEM INTERFACE ${PROJECT_SOURCE_DIR}/compat/gnustep/shim
                                                           /usr/include/GNUstep)
  target_link_libraries(menubar_objc INTERFACE gnustep-gui gnustep-base objc BlocksRuntime Threads::Threads)
endif()
add_library(menubar::objc ALIAS menubar_objc)
