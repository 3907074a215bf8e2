# One library target per folder. A target sees its own folder, its own public headers
# (FOLDER/include) and those of the targets named in USES, nothing else: an include that the
# architecture forbids does not compile.

# While the folders come into being: leaves out what is not there yet, and says so.
macro(mm_skip_missing)
  foreach(source IN LISTS ARG_SOURCES)
    if(NOT EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${source})
      message(STATUS "${name}: ${source} is not there yet")
      list(REMOVE_ITEM ARG_SOURCES ${source})
    endif()
  endforeach()
endmacro()

# mm_library(name SOURCES file... [USES target...] [HEADERS dir...])
#   HEADERS overrides the public include directory (default: include).
function(mm_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES;HEADERS" ${ARGN})
  if(NOT ARG_HEADERS)
    set(ARG_HEADERS include)
  endif()
  mm_skip_missing()
  if(NOT ARG_SOURCES)
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${ARG_HEADERS})
    target_link_libraries(${name} INTERFACE mm_options ${ARG_USES})
    return()
  endif()
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${ARG_HEADERS} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC mm_options ${ARG_USES})
endfunction()

# mm_program(name SOURCES file... [USES target...])
function(mm_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  mm_skip_missing()
  if(NOT ARG_SOURCES)
    return()
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE mm_options ${ARG_USES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endfunction()
