#include "Messages.h"

#include <cstdio>
#include <utility>

#include "Encode.h"

namespace reader {

Messages::Messages(std::function<void(const std::string&)> sink) : sink_(std::move(sink)) {}

void Messages::Problem(const std::string& text) {
  ++problems_;
  if (sink_) {
    sink_(text);
  } else {
    Say(text);
  }
}

void Messages::Note(const std::string& text) {
  Say(text);
}

void Messages::Say(const std::string& text) {
  if (said_.insert(text).second) (void)std::fprintf(stderr, "metadata: %s\n", Printable(text).c_str());
}

}  // namespace reader
