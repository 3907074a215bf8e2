# Finds libsodium, which has no CMake package: sets Sodium_FOUND and defines the target Sodium::Sodium.
find_path(SODIUM_INCLUDE_DIR sodium.h)
find_library(SODIUM_LIBRARY sodium)
if(EXISTS "${SODIUM_INCLUDE_DIR}/sodium/version.h")
  file(STRINGS "${SODIUM_INCLUDE_DIR}/sodium/version.h" version REGEX "SODIUM_VERSION_STRING")
  string(REGEX MATCH "[0-9.]+" Sodium_VERSION "${version}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Sodium
  REQUIRED_VARS SODIUM_LIBRARY SODIUM_INCLUDE_DIR
  VERSION_VAR Sodium_VERSION)
mark_as_advanced(SODIUM_INCLUDE_DIR SODIUM_LIBRARY)

if(Sodium_FOUND AND NOT TARGET Sodium::Sodium)
  add_library(Sodium::Sodium UNKNOWN IMPORTED)
  set_target_properties(Sodium::Sodium PROPERTIES
    IMPORTED_LOCATION "${SODIUM_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${SODIUM_INCLUDE_DIR}")
endif()
