#include "RangeOptions.h"

#include <CLI/CLI.hpp>

namespace reader {

CLI::Option* AddInstant(CLI::App& app, const std::string& name, std::optional<Instant>& instant,
                        const std::string& help) {
  const auto read = [&instant](const std::string& text) {
    std::string error;
    if (ReadInstant(text, instant.emplace(), error)) return;
    throw CLI::ValidationError(error);
  };
  return app.add_option_function<std::string>(name, read, help)->type_name("T");
}

void SourceOption::Declare(CLI::App& app) {
  const auto read = [this](const std::string& text) {
    std::string error;
    if (!selection_.emplace().Read(text, error)) throw CLI::ValidationError(error);
  };
  app.add_option_function<std::string>("--source", read, "only these, separated by commas")
      ->type_name("SOURCES");
}

void RangeOptions::Declare(CLI::App& app) {
  AddInstant(app, "--from", from_, "only records at T and later");
  AddInstant(app, "--to", to_, "only records up to T");
}

void FormatOption::Declare(CLI::App& app) {
  app.add_option("--format", name_, "text, csv or jsonl")
      ->check(CLI::IsMember({"text", "csv", "jsonl"}))
      ->capture_default_str();
}

bool RangeOptions::Find(const std::vector<Run>& runs, Range& range, Messages& messages) const {
  if (from_ && !(range.from = Resolve(*from_, runs, messages))) return false;
  if (to_ && !(range.to = Resolve(*to_, runs, messages))) return false;
  if (!from_ || !to_ || !range.from->IsAfter(*range.to)) return true;
  messages.Problem("--from " + from_->said + " is after --to " + to_->said);
  return false;
}

}  // namespace reader
