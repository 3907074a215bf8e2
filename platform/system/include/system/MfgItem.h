#pragma once

#include <string>

// Data that the manufacturer wrote into the device.
class MfgItem {
 public:
  // Reads the system's serial number from the file that the environment variable MFG_FILE names. If that is
  // not set, reads the device tree's serial number, else the machine id. Takes the first line that is not
  // blank, without surrounding white space and NULs, at most 256 bytes. Returns false and leaves `serial`
  // unchanged when no file has one.
  static bool GetSystemSerialNumber(std::string& serial);
};
