#include "store/MetadataReader.h"

#include <functional>

#include "CopyFile.h"
#include "CopyWriter.h"
#include "OpenStores.h"
#include "log/LogLine.h"
#include "system/Watchdog.h"

using store::CopyFile;
using store::CopyWriter;
using store::Ok;
using store::RunFiles;
using store::SqliteCode;
using store::TickRange;

namespace {

constexpr LogSource log{"MetadataReader"};

struct Asked {
  std::string source;
  unsigned int first;
  unsigned int last;
};

SqliteCode WriteCopy(CopyWriter& writer, int file, const Asked& asked) {
  SqliteCode code = writer.Begin(file);
  if (Ok(code)) code = writer.CopyRun();
  return Ok(code) ? writer.End(asked.source, asked.first, asked.last) : code;
}

// Null on success, else the reason.
const char* Copy(const Asked& asked, const std::string& destination, const std::function<void()>& pet) {
  store::OpenStore* const recording = store::FindOpenStore(asked.source);
  if (recording == nullptr) return "the store is not open";
  const store::FileNames names(asked.source);
  store::CurrentRun current;
  if (!recording->Settle(current)) return "what waits cannot be committed";
  CopyFile file;
  if (const char* reason = file.Create(destination, names, names.PathOf(current.files.back()))) return reason;
  RunFiles run;
  if (!run.Look(names, current, pet)) return "a recording cannot be read";
  const TickRange range = store::RangeOf(asked.first, asked.last, run.files.front().firstTick, current.now);
  if (range.Empty()) return "the ticks lie beside the run";
  CopyWriter writer(run, range, [&] {
    pet();
    file.WriteBack();
  });
  const SqliteCode code = WriteCopy(writer, file.Get(), asked);
  pet();
  const char* const reason = Ok(code) ? file.Publish() : store::TextOf(code);
  pet();
  return reason;
}

}  // namespace

bool MetadataReader::ReadToNewFile(const std::string& source, const std::string& destination,
                                   unsigned int first, unsigned int last, Watchdog* watchdog) {
  const Asked asked{source, first, last};
  const char* const reason = Copy(asked, destination, [watchdog] {
    if (watchdog != nullptr) watchdog->PetWatchdog();
  });
  // The reason comes first: a long path would push it out of the line.
  if (reason != nullptr) log(kLogError, "Copy failed (", reason, "): ", destination);
  return reason == nullptr;
}
