#include "GpsHal.h"

#include "GpsItem.h"
#include "MetadataMgrMessages.h"
#include "Processes.h"
#include "clients/ServerClients.h"
#include "system/KvGetenv.h"

GpsHal::GpsHal() : publisher_(e_Process_GpsHal), receiver_(MakeReceiver()) {
  publisher_.AddActions(actions_);
  if (receiver_ == nullptr) return;
  static_cast<GpsStatusItem&>(*publisher_.ItemOf(GpsHalClient::kStatus)) = NoFix();
  for (const char* verb : {"gps fix", "gps none", "gps rate"}) {
    actions_[verb] = [](const Words&) { return Outcome{false, "a receiver is followed"}; };
  }
}

void GpsHal::Prepare(LinxIpc& ipc) {
  publisher_.Open(ipc);
  ipc.RegisterHandler(MetadataMgrMsg_PingResponse, EndReachedHandler, this);
}

int GpsHal::WaitMs() const {
  const int waitMs = publisher_.WaitMs();
  if (receiver_ == nullptr || waitMs >= 0) return waitMs;
  return begun_ ? receiver_->MsToNext(publisher_.DriveSeconds(), publisher_.Speed())
                : receiver_->MsToNext(-1, 1);
}

void GpsHal::DoDueWork() {
  publisher_.DoDueWork();
  if (receiver_ != nullptr) Follow();
}

void GpsHal::Follow() {
  if (!begun_ && publisher_.Driving()) {
    receiver_->BeginAt(publisher_.JoinedLate() ? publisher_.DriveSeconds() : 0);
    begun_ = true;
  }
  auto& item = static_cast<GpsStatusItem&>(*publisher_.ItemOf(GpsHalClient::kStatus));
  while (receiver_->Next(begun_ ? publisher_.DriveSeconds() : -1, item)) {
    (void)publisher_.SendItem(GpsHalClient::kStatus);
  }
  if (begun_ && receiver_->AtEnd() && !endTold_) TellEnd();
}

// MetadataMgr answers what comes over one connection in its order: with its answer it has all readings.
void GpsHal::TellEnd() {
  if (KvGetenv(kNmeaEndsDriveVariable) == nullptr) return;
  endTold_ = SendMessage(Ipc(), ProcessName(e_Process_MetadataMgr), MetadataMgrMsg_Ping) == 0;
}

void GpsHal::EndReachedHandler(LinxIpc* ipc, void* /*self*/) {
  (void)Ask(*ipc, kBenchName, {"quit"});
}
