#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Row.h"
#include "Selection.h"

namespace reader {

// An output format for records.
class RowFormat {
 public:
  virtual ~RowFormat() = default;
  virtual bool WantsText() const { return false; }
  virtual void Begin(std::string& /*out*/) {}
  virtual void Append(const Row& row, std::string& out) = 0;
  // Takes a record that is not written, in order with the others.
  virtual void Skip(const Row& /*row*/) {}
  virtual void End(std::string& /*out*/) {}
};

// `name` is "text", "csv" or "jsonl". CSV gets the columns of all tables that may hold selected records. A
// null selection selects everything.
std::unique_ptr<RowFormat> MakeRowFormat(const std::string& name, const Selection* selection);

}  // namespace reader
