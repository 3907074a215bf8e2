#include "GpsHal.h"

#include "GpsItem.h"
#include "Processes.h"
#include "system/KvGetenv.h"
#include "system/Messages.h"

namespace bench {

GpsHal::GpsHal()
    : publisher_(e_Process_GpsHal), receiver_(MakeReceiver([this](const std::string& text) { Say(text); })) {
  publisher_.AddActions(actions_);
  if (receiver_ == nullptr) return;
  item_ = static_cast<GpsStatusItem*>(publisher_.ItemOf(kSource));
  *item_ = NoFix();
  for (const char* verb : {"gps fix", "gps none", "gps rate", "payload"}) {
    actions_[verb] = [](const Words&) { return Outcome{false, "GpsHal follows a receiver"}; };
  }
}

void GpsHal::Prepare(LinxIpc& ipc) {
  publisher_.Open(ipc);
  ipc.RegisterHandler(MetadataMgrMsg_PingResponse, EndReachedHandler, this);
}

int GpsHal::WaitMs() const {
  const int waitMs = publisher_.WaitMs();
  if (receiver_ == nullptr || waitMs >= 0) return waitMs;
  const DriveClock& drive = publisher_.Drive();
  return begun_ ? receiver_->MsToNext(drive.Seconds(), drive.Speed()) : receiver_->MsToNext(-1, 1);
}

void GpsHal::DoDueWork() {
  publisher_.DoDueWork();
  if (receiver_ != nullptr) Follow();
}

void GpsHal::Follow() {
  const DriveClock& drive = publisher_.Drive();
  if (!begun_ && drive.Running()) {
    receiver_->BeginAt(publisher_.JoinedLate() ? drive.Seconds() : 0);
    begun_ = true;
  }
  while (receiver_->Next(begun_ ? drive.Seconds() : -1, *item_)) (void)publisher_.SendItem(kSource);
  if (begun_ && receiver_->AtEnd() && !endTold_) TellEnd();
}

// MetadataMgr handles the messages of a connection in order: its answer follows all readings.
void GpsHal::TellEnd() {
  if (KvGetenv(kNmeaEndsDriveVariable) == nullptr) return;
  endTold_ = SendMessage(Ipc(), MetadataMgrName(), MetadataMgrMsg_Ping) == 0;
}

void GpsHal::EndReachedHandler(LinxIpc* ipc, void* /*self*/) {
  (void)Ask(*ipc, kBenchName, {"quit"});
}

void GpsHal::Say(const std::string& text) {
  (void)SendMessage(Ipc(), kBenchName, BenchMsg_Said, text);
}

}  // namespace bench
