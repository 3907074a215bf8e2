#pragma once

#include <sys/types.h>

#include <string>

#include "PlainFile.h"

namespace store {

// A new file that shows under its name only when it is complete, and that nobody can put another in the place
// of: it has no name until then. On a file system without such files it has another, `partial`, in its
// directory.
class NewFile {
 public:
  NewFile() = default;
  ~NewFile();  // removes what was not published
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  // Makes it for the path `directory` (an open one) and `name`, with mode 0600. 0 or an errno value.
  int Create(int directory, const std::string& name, const std::string& partial);

  int Get() const { return file_.Get(); }

  // Durable under its name when 0; else an errno value: EEXIST when something has come there.
  int Publish();

 private:
  int Link() const;

  int directory_ = -1;
  std::string name_;
  std::string partial_;  // empty: it has no name
  Descriptor file_;
  bool published_ = false;
};

}  // namespace store
