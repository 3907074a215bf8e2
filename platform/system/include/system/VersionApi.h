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
  // The software version as text; valid as long as the entry.
  const char* asString_sw() const { return version_.c_str(); }

 private:
  std::string name_;
  std::string version_;
};

class VersionApi {
 public:
  // The system's version file, /etc/korvane/versions.
  static const std::string versionFile;

  // Appends the entries of `file` in its order; with `versionFile` those of the file that the environment
  // variable VERSION_FILE names, where it is set and not empty. A line is a name, "=" or white space, and the
  // version, which is the rest of the line; lines that begin with "#" and lines without a name or
  // a version are skipped. A file that cannot be read gives nothing; at most 64 KiB of it are
  // read, and a line cut by that bound is skipped.
  static void GetAllVersions(std::vector<VersionEntry>& entries, const std::string& file);
};
