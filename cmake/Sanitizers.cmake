# Sanitizers apply to the whole build: a report from half-instrumented code cannot be trusted. What they are told is in
# every program, whoever starts it.
if(MENUBAR_SANITIZERS)
  add_library(sanitizer_options OBJECT ${PROJECT_SOURCE_DIR}/cmake/SanitizerOptions.cpp)
  target_compile_options(sanitizer_options PRIVATE -fno-sanitize=all) # it is called before anything is set up
  link_libraries($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:sanitizer_options>>)
  add_compile_options(-fsanitize=${MENUBAR_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${MENUBAR_SANITIZERS})
endif()
