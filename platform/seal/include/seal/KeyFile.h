#pragma once

#include <string>

#include "seal/KeyTree.h"
#include "seal/Types.h"

namespace seal {

// The recorder's secrets on its own medium, in two slots written in turn. Writes in place, because a renamed
// file would leave the old key in free blocks. Each slot has a checksum over itself and the hardware address,
// so that another recorder rejects a copy. At most one process has a key file open.
class KeyFile {
 public:
  enum class Outcome : unsigned char {
    kOk,
    kMissing,  // the file does not exist
    kExposed,  // not a regular file that only this user may access
    kBusy,     // another process has it open
    kInvalid,  // damaged, or from another recorder
    kFailed,   // I/O error, see errno
  };

  KeyFile() = default;
  ~KeyFile() { Close(); }
  KeyFile(const KeyFile&) = delete;
  KeyFile& operator=(const KeyFile&) = delete;

  // Creates the file, mode 0600, and leaves it open. kFailed with EEXIST if it exists.
  Outcome Create(const std::string& path, const std::string& hardware, const KeyTree& tree);

  // Opens the file, reads its newest state and erases the older one. Use the outputs only on kOk.
  Outcome Open(const std::string& path, const std::string& hardware, KeyTree& tree, Place& last);

  // Replaces the state. True: the new state is on the medium and the old one is overwritten. False: the state
  // is the old or the new one, and both may be on the medium.
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
  int slot_ = 1;               // holds the newest state
  std::uint64_t written_ = 0;  // number of writes so far
};

}  // namespace seal
