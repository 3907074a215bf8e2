#pragma once

#include <sys/types.h>

#include <string>

#include "PlainFile.h"

namespace store {

// A new file that gets its name only when it is complete. Until then it has no name, so nobody can replace
// it. On a file system without unnamed files it has the name `partial` in the same directory.
class NewFile {
 public:
  NewFile() = default;
  ~NewFile();  // removes an unpublished file
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  // Creates the file, mode 0600, for `name` in the open `directory`. 0 or an errno value.
  int Create(int directory, const std::string& name, const std::string& partial);

  int Get() const { return file_.Get(); }

  // Gives the file its name. 0: it is durable under that name. Else an errno value; EEXIST: name taken.
  int Publish();

 private:
  int Link() const;

  int directory_ = -1;
  std::string name_;
  std::string partial_;  // empty: the file has no name
  Descriptor file_;
  bool published_ = false;
};

}  // namespace store
