# Sanitizers apply to the whole build: a report from half-instrumented code cannot be trusted.
if(MENUBAR_SANITIZERS)
  add_compile_options(-fsanitize=${MENUBAR_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${MENUBAR_SANITIZERS})
endif()
