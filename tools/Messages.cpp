#include "Messages.h"

#include <cstdio>
#include <memory>
#include <set>

Messages::Messages() {
  auto said = std::make_shared<std::set<std::string>>();
  sink_ = [said](const std::string& text) {
    if (said->insert(text).second) (void)std::fprintf(stderr, "metadata: %s\n", text.c_str());
  };
}

void Messages::Problem(const std::string& text) {
  ++problems_;
  sink_(text);
}
