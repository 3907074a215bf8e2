#pragma once

#include <string>

#include "seal/KeyTree.h"
#include "seal/Types.h"

namespace seal {

// The recorder's secrets on its own medium: two slots, written in turn in place, since a renamed file would
// leave the old key in free blocks. Each has a checksum over itself and the hardware address, so that a copy
// is of no use in another recorder. At most one process has a key file open.
class KeyFile {
 public:
  enum class Outcome : unsigned char {
    kOk,
    kMissing,  // there is no such file
    kExposed,  // not a plain file of this user that nobody else may read
    kBusy,     // another process has it open
    kInvalid,  // damaged, or of another recorder
    kFailed,   // the medium: errno tells
  };

  KeyFile() = default;
  ~KeyFile() { Close(); }
  KeyFile(const KeyFile&) = delete;
  KeyFile& operator=(const KeyFile&) = delete;

  // Makes the file, mode 0600, and leaves it open. kFailed with EEXIST where something is there.
  Outcome Create(const std::string& path, const std::string& hardware, const KeyTree& tree);

  // Opens the file, tells its newest state and erases what is older. The outputs change with kOk only.
  Outcome Open(const std::string& path, const std::string& hardware, KeyTree& tree, Place& last);

  // Replaces the state: when this returns true, the new one is on the medium and the old one overwritten.
  // False: the state is the old or the new one, and both may be found.
  bool Save(const KeyTree& tree, const Place& last);

  void Close();
  bool IsOpen() const { return descriptor_ >= 0; }

 private:
  Outcome Lock(const std::string& path, int flags);
  Outcome Read(KeyTree& tree, Place& last);
  bool WriteSlot(int slot, const KeyTree& tree, const Place& last);
  bool Erase(int slot);

  std::string hardware_;
  int descriptor_ = -1;
  int slot_ = 1;               // that holds the newest state
  std::uint64_t written_ = 0;  // how often the file was
};

}  // namespace seal
