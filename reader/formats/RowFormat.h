#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Row.h"
#include "Selection.h"

namespace reader {

// A form in which records are written.
class RowFormat {
 public:
  virtual ~RowFormat() = default;
  virtual bool WantsText() const { return false; }
  virtual void Begin(std::string& /*out*/) {}
  virtual void Append(const Row& row, std::string& out) = 0;
  // A record that is not to be written, in its order.
  virtual void Skip(const Row& /*row*/) {}
  virtual void End(std::string& /*out*/) {}
};

// "text", "csv" or "jsonl". The columns of CSV are those of the tables in which what is selected may
// stand; a null selection selects everything.
std::unique_ptr<RowFormat> MakeRowFormat(const std::string& name, const Selection* selection);

}  // namespace reader
