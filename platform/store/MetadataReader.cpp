#include "store/MetadataReader.h"

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

SqliteCode WriteCopy(CopyWriter& writer, const std::string& path, const Asked& asked) {
  SqliteCode code = writer.Begin(path);
  if (Ok(code)) code = writer.CopyRun();
  return Ok(code) ? writer.End(asked.source, asked.first, asked.last) : code;
}

}  // namespace

bool MetadataReader::ReadToNewFile(const std::string& source, const std::string& destination,
                                   unsigned int first, unsigned int last, Watchdog* watchdog) {
  const auto pet = [watchdog] {
    if (watchdog != nullptr) watchdog->PetWatchdog();
  };
  store::OpenStore* const recording = store::FindOpenStore(source);
  if (recording == nullptr) return false;
  const store::FileNames names(source);
  CopyFile file;
  if (!file.Create(destination, names)) return false;

  store::CurrentRun current;
  RunFiles run;
  if (!recording->Settle(current) || !run.Look(names, current, pet)) return false;
  const TickRange range = store::RangeOf(first, last, run.files.front().firstTick, current.now);
  if (range.Empty()) return false;
  CopyWriter writer(run, range, [&] {
    pet();
    file.WriteBack();
  });
  const SqliteCode code = WriteCopy(writer, file.PartialPath(), {source, first, last});
  const char* trouble = Ok(code) ? nullptr : store::TextOf(code);
  pet();
  if (trouble == nullptr && !file.Publish()) trouble = "it cannot be put in its place";
  pet();
  if (trouble != nullptr) log(kLogError, "Copy to ", destination, " failed: ", trouble);
  return trouble == nullptr;
}
