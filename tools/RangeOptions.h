#pragma once

#include <optional>
#include <string>

#include "Commands.h"
#include "Instant.h"
#include "Selection.h"

// --from, --to and --source.
class RangeOptions {
 public:
  void Declare(CLI::App& app);
  // Null for everything.
  const Selection* Selected() const { return selection_ ? &*selection_ : nullptr; }
  // False, after a problem was said, when there is no such event.
  bool Find(const std::vector<Run>& runs, Range& range, Messages& messages) const;

 private:
  std::optional<Instant> from_;
  std::optional<Instant> to_;
  std::optional<Selection> selection_;
};

// An option that takes an instant.
CLI::Option* AddInstant(CLI::App& app, const std::string& name, std::optional<Instant>& instant,
                        const std::string& help);
