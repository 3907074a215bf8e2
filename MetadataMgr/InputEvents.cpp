#include "ItemHandler.h"
#include "ManagerLog.h"
#include "Subscribing.h"
#include "items/FpgaExternalEventItem.h"

namespace {

struct InputSignal {
  const char* text;
  std::uint32_t bit;  // same bit in both masks
  e_Tag active;
  e_Tag inactive;
};

// In the order of the reports, which differs from the order of the bits and tags.
constexpr InputSignal kInputSignals[] = {
    {" lights changed", FpgaExternalEventItem::kLights, e_Tag_LightsOn, e_Tag_LightsOff},
    {" brakes changed", FpgaExternalEventItem::kBrakes, e_Tag_BrakesOn, e_Tag_BrakesOff},
    {" siren changed", FpgaExternalEventItem::kSiren, e_Tag_SirenOn, e_Tag_SirenOff},
    {" aux changed", FpgaExternalEventItem::kAux, e_Tag_AuxOn, e_Tag_AuxOff},
    {" doorOpen changed", FpgaExternalEventItem::kDoorOpen, e_Tag_DoorOpen, e_Tag_DoorClosed},
    {" ignition changed", FpgaExternalEventItem::kIgnition, e_Tag_IgnitionOn, e_Tag_IgnitionOff},
};

}  // namespace

// Reports all inputs, changed or not.
bool MetadataMgr::SubscribeToFpga(LinxIpc& ipc) {
  subscribing::Trace(e_Process_Fpga);
  FpgaExternalEventItem item;
  if (!subscribing::Fetch<e_Process_Fpga>(subscribing::MakeOnce(fpgaClient, ipc), this, {&item}))
    return false;
  item.changedMask |= FpgaExternalEventItem::kAllInputs;
  item.reserved = 0;
  ReportExternalEvent(item, false);
  return true;
}

void MetadataMgr::ReportExternalEvent(const FpgaExternalEventItem& item, bool report) {
  kManagerLog(kLogInfo, "Add in SystemTick to ExternalEvent - tick = ", item.tick);
  for (const InputSignal& signal : kInputSignals) {
    if ((item.changedMask & signal.bit) == 0) continue;
    kManagerLog(kLogInfo, "ReportExternalEvent", signal.text);
    const bool active = (item.inputLevels & signal.bit) != 0;
    dataStore.ReportStateData(active ? signal.active : signal.inactive, report, item.tick);
  }
}

void MetadataMgr::ExternalInputEventHandler(LinxIpc* ipc, void* context) {
  HandleMessageItem<FpgaExternalEventItem>(ipc, context, {"ExternalInputEventHandler"},
                                           [](MetadataMgr& manager, const FpgaExternalEventItem& item) {
                                             manager.ReportExternalEvent(item, true);
                                           });
}
