# One library target per folder. A target sees only its own folder, its own public headers (FOLDER/include) and
# those of the targets named in USES. An include that the architecture forbids does not compile.

# mm_library(name SOURCES file... [USES target...] [HEADERS dir...])
#   HEADERS overrides the public include directory (default: include).
function(mm_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES;HEADERS" ${ARGN})
  if(NOT ARG_HEADERS)
    set(ARG_HEADERS include)
  endif()
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${ARG_HEADERS} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE mm_options ${ARG_USES})
endfunction()

# mm_program(name SOURCES file... [USES target...])
function(mm_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE mm_options ${ARG_USES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endfunction()

# All targets of the process, for tests, fuzzers and benchmarks.
set(mm_platform platform_os platform_store platform_clients platform_sharedmem platform_items platform_ipc platform_system
  platform_log)
set(mm_process metadatamgr common_misc items ${mm_platform})

# All targets of the reader.
set(mm_reader reader_commands reader_report reader_formats reader_analysis reader_recording reader_text)
