#pragma once

#include <optional>
#include <string>

#include "Commands.h"
#include "Output.h"
#include "Position.h"
#include "Selection.h"

namespace reader {

// Options shared by several commands.

// --source
class SourceOption {
 public:
  void Declare(CLI::App& app);
  // Null selects everything.
  const Selection* Selected() const { return selection_ ? &*selection_ : nullptr; }

 private:
  std::optional<Selection> selection_;
};

// --from and --to
class RangeOptions {
 public:
  void Declare(CLI::App& app);
  // Reports a problem and returns false if the range cannot be resolved.
  bool Find(const std::vector<Run>& runs, Range& range, Messages& messages) const;

 private:
  std::optional<Instant> from_;
  std::optional<Instant> to_;
};

// --format text, csv or jsonl
class FormatOption {
 public:
  void Declare(CLI::App& app);
  const std::string& Name() const { return name_; }
  Output::Kind OutputKind() const { return name_ == "text" ? Output::Kind::kText : Output::Kind::kData; }

 private:
  std::string name_ = "text";
};

// Adds an option that takes an instant.
CLI::Option* AddInstant(CLI::App& app, const std::string& name, std::optional<Instant>& instant,
                        const std::string& help);

}  // namespace reader
