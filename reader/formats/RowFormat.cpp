#include "RowFormat.h"

#include "CsvFormat.h"
#include "JsonFormat.h"
#include "TextFormat.h"

namespace reader {

std::unique_ptr<RowFormat> MakeRowFormat(const std::string& name, const Selection* selection) {
  if (name == "csv") return MakeCsvFormat(selection, false);
  if (name == "jsonl") return MakeJsonFormat();
  return MakeTextFormat();
}

}  // namespace reader
