// The shared record equals the golden bytes when written, and these bytes are read correctly. With the
// environment variable MM_EXCHANGE the record is that of METADATA_SHM, which a program of the other machine
// may have written.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "SharedRecord.h"
#include "ipc/IpcMessage.h"
#include "items/GpsStatusItem.h"
#include "items/RadarItem.h"
#include "sharedmem/MetadataSharedMemReader.h"
#include "support/Hex.h"
#include "wire/WireDocument.h"

namespace {

template <typename Bytes>
std::string Hex(const Bytes& bytes) {
  return ToHex({reinterpret_cast<const char*>(&bytes[0]), bytes.size()});
}

class SharedRecord : public testing::Test {
 protected:
  SharedRecord() {
    if (!own_.empty()) setenv("METADATA_SHM", own_.c_str(), 1);
  }
  ~SharedRecord() override {
    if (!own_.empty()) shm_unlink(own_.c_str());
  }

  std::string Golden(const std::string& name) { return golden_.Bytes(name, "shared record"); }

  // A reading from its bytes in docs/wire.md.
  template <typename T>
  T Captured(const char* name) {
    std::string bytes = WireDocument(WIRE_DOCUMENT).Bytes(name, "item");
    IpcMessage message;
    EXPECT_EQ(message.Allocate(1, static_cast<unsigned int>(bytes.size()), bytes.data()), 0);
    T item;
    EXPECT_TRUE(item.DecodeMsg(message));
    return item;
  }

  void Write() {
    MetadataSharedMem view;
    unsigned char* items = view.MetadataItems(false);
    ASSERT_NE(items, nullptr);
    const auto expect = [&](const char* name) {
      EXPECT_EQ(Hex(std::string(items, items + MetadataSharedMem::kSize)), ToHex(Golden(name))) << name;
    };
    sharedrecord::Reset(items);
    expect("reset");
    sharedrecord::WriteGps(items, Captured<GpsStatusItem>("GpsStatusItem"));
    sharedrecord::WriteRadar(items, Captured<RadarItem>("RadarItem"));
    expect("kept");
    sharedrecord::MarkEnded(items);
    expect("ended");
  }

  const bool exchange_ = std::getenv("MM_EXCHANGE") != nullptr;
  const std::string own_ = exchange_ ? "" : "/metadata-machines-test-" + std::to_string(getpid());
  WireDocument golden_{GOLDEN "/bytes.md"};
};

TEST_F(SharedRecord, IsWrittenAsItAlwaysWas) {
  Write();
}

TEST_F(SharedRecord, IsReadAsItWasWritten) {
  if (!exchange_) Write();
  MetadataSharedMemReader reader;
  ASSERT_EQ(reader.Attach(), 0);
  MetadataSharedMemReader::Fields fields{};
  EXPECT_TRUE(reader.Read(fields));
  EXPECT_EQ(Hex(fields), ToHex(Golden("ended").substr(0, fields.size())));
}

}  // namespace
