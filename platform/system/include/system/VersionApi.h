#pragma once

#include <string>
#include <utility>
#include <vector>

// One line of the version file: the name of a component and its software version.
class VersionEntry {
 public:
  VersionEntry(std::string name, std::string version)
      : name_(std::move(name)), version_(std::move(version)) {}

  const std::string& name() const { return name_; }
  // The software version; valid as long as the entry.
  const char* asString_sw() const { return version_.c_str(); }

 private:
  std::string name_;
  std::string version_;
};

class VersionApi {
 public:
  // The system's version file, /etc/korvane/versions.
  static const std::string versionFile;

  // Appends the entries of `file` in the file's order. The environment variable VERSION_FILE, if set and not
  // empty, replaces `versionFile`. A line is a name, "=" or white space, and the version to the end of the
  // line. Skips lines that begin with "#" and lines without a name or a version. Reads at most 64 KiB and
  // skips a line cut there. Appends nothing when the file cannot be read.
  static void GetAllVersions(std::vector<VersionEntry>& entries, const std::string& file);
};
