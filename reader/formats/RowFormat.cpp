#include "RowFormat.h"

#include "CsvFormat.h"
#include "JsonFormat.h"
#include "TextFormat.h"

std::unique_ptr<RowFormat> MakeRowFormat(const std::string& name, const Selection* selection) {
  if (name == "csv") return MakeCsvFormat(selection);
  if (name == "jsonl") return MakeJsonFormat();
  return MakeTextFormat();
}
