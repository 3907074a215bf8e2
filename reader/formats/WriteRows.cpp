#include "WriteRows.h"

#include "RunReader.h"

namespace reader {
namespace {

void WriteAll(RunReader& reader, const Range& range, RowFormat& format, Output& out) {
  format.Begin(out.Text());
  for (Row row; out.Good() && reader.Next(row);) {
    if (!range.Contains(row)) {
      format.Skip(row);
      continue;
    }
    format.Append(row, out.Text());
    out.Commit();
  }
  format.End(out.Text());
}

}  // namespace

bool WriteRows(const std::vector<Run>& runs, const Range& range, const Selection* selection,
               const std::vector<std::unique_ptr<RowFormat>>& formats, bool beside, Output& out,
               Messages& messages) {
  for (const auto& format : formats) {
    RunReader reader(runs, selection, format->WantsText(), messages);
    reader.ShowProgress(beside);
    out.BeforeWriting([&reader] { reader.Pause(); });
    WriteAll(reader, range, *format, out);
    out.BeforeWriting(nullptr);
  }
  return out.Flush();
}

}  // namespace reader
