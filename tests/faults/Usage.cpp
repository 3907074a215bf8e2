#include "Usage.h"

Usage::Usage(const std::string& basePath, StoreOptions options) {
  setenv("LOG_TARGET", "stderr", 1);
  options.clock = &clock_;
  store_ = std::make_unique<DataStoreNormal>(basePath, options);
}

bool Usage::Open() {
  const bool open = store_->Open();
  store_->ReportShutdownDataAtStartup();
  store_->TimerTick(clock_.tick);
  afterCall();
  return open;
}

void Usage::Turn(unsigned int ms) {
  clock_.tick += ms;
  clock_.utcMs += ms;
  store_->TimerTick(clock_.tick);
  afterCall();
}

void Usage::Temperature() {
  store_->ReportTemp(e_TempSensors{0}, static_cast<short>(Reported("temperature")), true, clock_.tick);
  Count("temperature");
}

void Usage::Text(std::size_t size) {
  store_->ReportStringData(e_Tag_Filler, std::string(size, 'x').c_str());
  Count("string");
}

void Usage::Bookmark() {
  store_->ReportBookmark(clock_.tick);
  Count("bookmark");
}

void Usage::Covert() {
  store_->ReportStateData(Reported("state") % 2 == 0 ? e_Tag_CovertEntered : e_Tag_CovertLeft, true,
                          clock_.tick);
  Count("state");
}

void Usage::Close() {
  store_->ReportShutdownData();
  afterCall();
  store_->Close();
  afterCall();
}

void Usage::Count(const char* table) {
  ++reported_[table];
  afterCall();
}
