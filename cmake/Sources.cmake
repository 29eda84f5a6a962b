# menubar_sources(TARGET FILE...) adds a folder's files to a target. Headers without a source of their own are its
# public header set: each is compiled alone when header sets are verified. A header with a source needs no such check,
# since that source includes it first (scripts/check-layers sees to it).
function(menubar_sources target)
  set(headers ${ARGN})
  set(sources ${ARGN})
  list(FILTER headers INCLUDE REGEX "\\.h$")
  list(FILTER sources EXCLUDE REGEX "\\.h$")
  foreach(source IN LISTS sources)
    string(REGEX REPLACE "\\.[a-z]+$" ".h" own_header "${source}")
    list(REMOVE_ITEM headers "${own_header}")
  endforeach()
  if(headers)
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
  endif()
  if(sources)
    target_sources(${target} PRIVATE ${sources})
  endif()
endfunction()
