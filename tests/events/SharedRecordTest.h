#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "Events.h"
#include "ProcessState.h"
#include "sharedmem/MetadataSharedMem.h"
#include "support/Hex.h"
#include "support/TempDir.h"

// With a shared record of the test's own, whose bytes are ee but for its version.
class SharedRecordTest : public EventsTest {
 protected:
  SharedRecordTest() {
    setenv("METADATA_SHM", name_.c_str(), 1);
    gMetadataDir = directory_.Path("metadata");
    EXPECT_TRUE(manager_.PreInit(ipc_));
    record_ = reader_.MetadataItems(false);
    std::fill_n(record_ + 2, 86, static_cast<unsigned char>(0xEE));
  }
  ~SharedRecordTest() override { shm_unlink(name_.c_str()); }

  std::string Record() const { return ToHex({reinterpret_cast<const char*>(record_), 88}); }

  const std::string name_ = "/metadata-events-test-" + std::to_string(getpid());
  TempDir directory_;
  MetadataSharedMem reader_;
  unsigned char* record_ = nullptr;
};
