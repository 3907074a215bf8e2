#include "system/KorvaneTerminateHandler.h"

#include <cstdlib>
#include <exception>

#include "log/LogLine.h"

namespace {

constexpr LogSource log{"KorvaneTerminateHandler"};

}  // namespace

void KorvaneTerminateHandler() {
  try {
    if (const std::exception_ptr active = std::current_exception()) std::rethrow_exception(active);
    log(kLogError, "terminated without an exception");
  } catch (const std::exception& error) {
    log(kLogError, "terminated by an exception: ", error.what());
  } catch (...) {
    log(kLogError, "terminated by an exception of unknown type");
  }
  std::abort();
}
