# The compile options of every target. The presets set optimisation.
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(mm_options INTERFACE)
target_compile_features(mm_options INTERFACE cxx_std_20)
target_compile_options(mm_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wold-style-cast -Wnon-virtual-dtor)
# In joined sources a local name may meet the constant of another source.
if(NOT CMAKE_UNITY_BUILD)
  target_compile_options(mm_options INTERFACE -Wshadow)
endif()
if(MM_WERROR)
  target_compile_options(mm_options INTERFACE -Werror)
endif()

# 64-bit file offsets and time_t, also on 32-bit targets.
target_compile_definitions(mm_options INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)

if(MM_SANITIZE)
  target_compile_options(mm_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(mm_options INTERFACE -fsanitize=address,undefined)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)  # GCC 12 with sanitizers warns about its own <regex>
    target_compile_options(mm_options INTERFACE -Wno-maybe-uninitialized)
  endif()
  if(MM_FUZZ)
    target_compile_options(mm_options INTERFACE -fsanitize=fuzzer-no-link)
  endif()
endif()

# Speeds up repeated builds, if installed.
find_program(MM_CCACHE ccache)
if(MM_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${MM_CCACHE})
endif()
