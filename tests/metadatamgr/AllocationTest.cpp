// No kind of event allocates memory on its way from the socket to the batch, once the buffers have grown.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "MetadataMgr.h"
#include "ProcessState.h"
#include "support/AllocationCount.h"
#include "support/EventKinds.h"
#include "support/IpcDir.h"
#include "support/RawPeer.h"
#include "system/Systick.h"

namespace {

unsigned int tickMs = 1000;

}  // namespace

// Replaces the platform's clock. While it stands still nothing is committed.
unsigned int Systick::SystemTick() const {
  return tickMs;
}

namespace {

constexpr int kEvents = 20;

TEST(Allocation, NoKindOfEventTakesMemoryOnItsWayToTheBatch) {
  const IpcDir dir;
  const std::string record = "/metadata-allocation-test-" + std::to_string(getpid());
  setenv("METADATA_SHM", record.c_str(), 1);
  gMetadataDir = dir.Beside("metadata");
  gMetadataPath = gMetadataDir + "/metadata";
  MetadataMgr manager;
  LinxIpc ipc("MetadataMgr");
  ASSERT_EQ(ipc.Init(), 0);
  ASSERT_TRUE(manager.PreInit(ipc));
  RegisterEventHandlers(ipc, &manager);
  const RawPeer sender = RawPeer::To("MetadataMgr", "Sender");
  std::size_t allocations = 0;
  const auto deliver = [&](const std::string& packet) {
    for (int i = 0; i < kEvents; ++i) ASSERT_EQ(sender.Send(packet), 0);
    const std::size_t before = AllocationCount();
    for (int i = 0; i < kEvents; ++i) {
      ASSERT_EQ(ipc.Receive(10000, 0, LinxIpc::emptyString, nullptr), 0);
      manager.PetWatchdog();
      manager.PeriodicProcessing();
    }
    allocations = AllocationCount() - before;
  };
  for (const EventKind& kind : EventKinds()) {
    SCOPED_TRACE(kind.name);
    deliver(kind.Packet());
    tickMs += 1000;
    manager.PeriodicProcessing();  // commits
    deliver(kind.Packet());
    EXPECT_EQ(allocations, 0U);
  }
  shm_unlink(record.c_str());
}

}  // namespace
