# One ctest entry per test program: simple, and quick under emulation. When a time-out ends a program, its last
# "[ RUN ]" line names the case that hangs. A program that runs no case fails.
find_package(GTest REQUIRED)

# mm_test(name SOURCES file... [USES target...] [LABELS label...] [OWN_MAIN])
# Sees its own folder and tests/ (for "support/X.h").
#   LABELS   native-only: for the emulated target the test is not built by default and listed as disabled,
#            because it is too slow there or does not depend on the machine; say which.
#   OWN_MAIN the sources have their own main.
function(mm_test name)
  cmake_parse_arguments(ARG "OWN_MAIN" "" "SOURCES;USES;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE mm_options ${ARG_USES} GTest::gtest)
  if(NOT ARG_OWN_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND ${name})
  set(timeout 120)
  if(CMAKE_CROSSCOMPILING)
    set(timeout 360)
  endif()
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${timeout}
    LABELS "${ARG_LABELS}"
    FAIL_REGULAR_EXPRESSION "Running 0 tests")
  if(CMAKE_CROSSCOMPILING AND "native-only" IN_LIST ARG_LABELS)
    set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
    set_tests_properties(${name} PROPERTIES DISABLED ON)
  endif()
endfunction()

# mm_start_of(VARIABLE program): sets VARIABLE to the path by which other programs start this one. For the
# emulated target it is a script that calls the emulator; MM_EMULATED_BIN names another directory of programs.
function(mm_start_of variable program)
  set(path $<TARGET_FILE:${program}>)
  if(CMAKE_CROSSCOMPILING)
    set(path ${CMAKE_BINARY_DIR}/emulated/${program})
    get_target_property(directory ${program} RUNTIME_OUTPUT_DIRECTORY)
    string(REPLACE ";" " " emulator "${CMAKE_CROSSCOMPILING_EMULATOR}")
    file(WRITE ${path} "#!/bin/sh\nexec ${emulator} \"\${MM_EMULATED_BIN:-${directory}}/${program}\" \"$@\"\n")
    file(CHMOD ${path} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
  endif()
  set(${variable} ${path} PARENT_SCOPE)
endfunction()
