# menubar_sources(TARGET FILE...) adds a folder's files to a target: headers as its public header set (each is compiled
# alone when header sets are verified), everything else as sources.
function(menubar_sources target)
  set(headers ${ARGN})
  set(sources ${ARGN})
  list(FILTER headers INCLUDE REGEX "\\.h$")
  list(FILTER sources EXCLUDE REGEX "\\.h$")
  if(headers)
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
  endif()
  if(sources)
    target_sources(${target} PRIVATE ${sources})
  endif()
endfunction()
