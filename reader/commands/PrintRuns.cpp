#include "PrintRuns.h"

#include "Output.h"

namespace reader {

int PrintRuns(const Recordings& recordings, bool asJson, const PrintText& text, const PrintJson& json) {
  Messages messages;
  Output out(Output::Kind::kText);
  JsonWriter writer(out.Text());
  if (asJson) writer.Object().Array("runs");
  for (const Run& run : recordings.Find(messages)) {
    if (asJson) {
      json(run, messages, writer);
    } else {
      text(run, messages, out.Text());
    }
    out.Commit();
  }
  if (asJson) {
    writer.EndArray();
    writer.EndObject();
    out.Text() += '\n';
  }
  return out.Flush() ? messages.Status() : kFinding;
}

}  // namespace reader
