#include "Usage.h"

namespace {

constexpr unsigned int kCommitAfterMs = 500;
constexpr unsigned int kCriticalGapMs = 50;

}  // namespace

Usage::Usage(const std::string& basePath, StoreOptions options) {
  setenv("LOG_TARGET", "stderr", 1);
  options.clock = &clock_;
  store_ = std::make_unique<DataStoreNormal>(basePath, options);
}

bool Usage::Open() {
  const bool open = store_->Open();
  store_->ReportShutdownDataAtStartup();
  store_->TimerTick(clock_.tick);
  Called();
  return open;
}

void Usage::Turn(unsigned int ms) {
  clock_.tick += ms;
  clock_.utcMs += ms;
  store_->TimerTick(clock_.tick);
  Due();
  Called();
}

void Usage::Temperature() {
  const unsigned int mark = NextMark();
  store_->ReportTemp(e_TempSensors{0}, static_cast<short>(mark), true, mark);
  Reported("temperature", mark, false);
}

void Usage::Text(std::size_t size) {
  store_->ReportStringData(e_Tag_Filler, std::string(size, 'x').c_str());
  Reported("string", 0, false);
}

void Usage::Bookmark() {
  const unsigned int mark = NextMark();
  store_->ReportBookmark(mark);
  Reported("bookmark", mark, true);
}

void Usage::Covert() {
  const unsigned int mark = NextMark();
  store_->ReportStateData(mark % 2 == 0 ? e_Tag_CovertEntered : e_Tag_CovertLeft, true, mark);
  Reported("state", mark, true);
}

void Usage::Close() {
  store_->ReportShutdownData();
  for (Report& report : reports_) report.dueCall = std::min(report.dueCall, calls_);
  Called();
  store_->Close();
  Called();
}

void Usage::Reported(const char* table, unsigned int mark, bool critical) {
  reports_.push_back({table, mark, clock_.tick, critical, calls_});
  if (critical && clock_.tick - lastCriticalCommit_ >= kCriticalGapMs) {
    for (Report& report : reports_) report.dueCall = std::min(report.dueCall, calls_);
    lastCriticalCommit_ = clock_.tick;
  }
  Called();
}

void Usage::Due() {
  bool criticalDue = false;
  for (Report& report : reports_) {
    if (report.dueCall != Report::kNever) continue;
    if (clock_.tick - report.tick < (report.critical ? kCriticalGapMs : kCommitAfterMs)) continue;
    report.dueCall = calls_;
    criticalDue = criticalDue || report.critical;
  }
  if (criticalDue) lastCriticalCommit_ = clock_.tick;
}

void Usage::Called() {
  ++calls_;
  afterCall();
}
