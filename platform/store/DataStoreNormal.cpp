#include "store/DataStoreNormal.h"

#include <arpa/inet.h>

#include <array>

#include "Store.h"
#include "Tags.h"

using store::Event;
using store::EventOf;
using store::Row;

namespace {

std::string_view TextOf(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

}  // namespace

DataStoreNormal::DataStoreNormal(const std::string& path) : DataStoreNormal(path, StoreOptions()) {}

DataStoreNormal::DataStoreNormal(const std::string& path, const StoreOptions& options)
    : store_(std::make_unique<Store>(path, options)) {}

DataStoreNormal::~DataStoreNormal() {
  store_->Close();
}

bool DataStoreNormal::Open() {
  return store_->Open();
}

void DataStoreNormal::Close() {
  store_->Close();
}

void DataStoreNormal::TimerTick(unsigned int tick) {
  store_->TimerTick(tick);
}

unsigned int DataStoreNormal::GetCurrentSystemTick() {
  return store_->LastTick();
}

void DataStoreNormal::ReportShutdownDataAtStartup() {
  store_->AddPreviousRun();
}

void DataStoreNormal::ReportShutdownData() {
  store_->AddRunEnd();
}

void DataStoreNormal::ReportConfiguration(bool report) {
  store_->AddConfiguration(EventOf(report));
}

void DataStoreNormal::WriteFullState(bool /*report*/) {
  store_->AddFullState();
}

void DataStoreNormal::ReportMac(unsigned char* mac, bool report) {
  if (mac == nullptr) return;
  constexpr char kHex[] = "0123456789abcdef";
  std::array<char, 17> text{};
  text.fill(':');
  for (std::size_t i = 0; i < 6; ++i) {
    text[3 * i] = kHex[mac[i] >> 4];
    text[3 * i + 1] = kHex[mac[i] & 15];
  }
  store_->Add({EventOf(report)}, Row<store::kMacTable>(std::string_view(text.data(), text.size())));
}

void DataStoreNormal::ReportSystemSerialNum(const std::string& serial) {
  store_->Add({Event::kInitial}, Row<store::kSerialTable>(serial));
}

void DataStoreNormal::ReportVersion(e_COMPONENT component, const char* version) {
  store_->Add({Event::kInitial}, Row<store::kVersionTable>(component, TextOf(version)));
}

void DataStoreNormal::ReportStateData(e_Tag tag, bool report, unsigned int tick) {
  store_->Add({EventOf(report), tick, store::IsCritical(tag)},
              Row<store::kStateTable>(store::SignalOf(tag), store::IsActive(tag)));
}

void DataStoreNormal::ReportBookmark(unsigned int tick) {
  store_->Add({Event::kChange, tick, true}, Row<store::kBookmarkTable>());
}

void DataStoreNormal::ReportStringData(e_Tag tag, const char* text) {
  store_->Add({Event::kChange}, Row<store::kStringTable>(tag, TextOf(text)));
}

void DataStoreNormal::ReportGpsState(bool valid, bool report) {
  store_->Add({EventOf(report)}, Row<store::kGpsStateTable>(valid));
}

void DataStoreNormal::ReportSpeed(unsigned char source, unsigned short speed, bool report, unsigned int tick,
                                  e_Tag tag) {
  store_->Add({EventOf(report), tick}, Row<store::kSpeedTable>(source, speed, tag));
}

void DataStoreNormal::ReportValidSpeed(unsigned char source, bool valid) {
  store_->Add({Event::kChange}, Row<store::kSpeedValidTable>(source, valid));
}

void DataStoreNormal::ReportRadarState(unsigned char radar, bool valid, bool report) {
  store_->Add({EventOf(report)}, Row<store::kRadarStateTable>(radar, valid));
}

void DataStoreNormal::ReportRadar(unsigned char radar, unsigned short speed1, unsigned short speed2,
                                  unsigned short speed3, e_RADAR_DIRECTION direction, bool report,
                                  unsigned int tick, e_Tag tag) {
  store_->Add({EventOf(report), tick},
              Row<store::kRadarTable>(radar, speed1, speed2, speed3, direction, tag));
}

void DataStoreNormal::ReportMicPresent(e_MicrophonePosition mic, bool present, bool report,
                                       unsigned int tick) {
  store_->Add({EventOf(report), tick}, Row<store::kMicPresentTable>(mic, present));
}

void DataStoreNormal::ReportMicState(e_MicrophonePosition mic, bool active, bool report, unsigned int tick) {
  store_->Add({EventOf(report), tick}, Row<store::kMicActiveTable>(mic, active));
}

void DataStoreNormal::ReportTemp(e_TempSensors sensor, short temperature, bool report, unsigned int tick) {
  store_->Add({EventOf(report), tick}, Row<store::kTemperatureTable>(sensor, temperature));
}

void DataStoreNormal::ReportCameraState(e_CameraPort camera, e_CameraState state, bool report,
                                        unsigned int tick) {
  store_->Add({EventOf(report), tick}, Row<store::kCameraTable>(camera, state));
}

void DataStoreNormal::ReportVideoStreamState(e_VideoStream stream, e_StreamState state, bool report,
                                             unsigned int tick) {
  store_->Add({EventOf(report), tick}, Row<store::kVideoStreamTable>(stream, state));
}

void DataStoreNormal::ReportLvsState(e_VideoStream stream, unsigned char camera, bool highQuality,
                                     bool enabled, unsigned int address, unsigned short port, bool report,
                                     unsigned int tick) {
  store_->Add({EventOf(report), tick},
              Row<store::kLiveStreamTable>(stream, camera, highQuality, enabled, ntohl(address), port));
}
