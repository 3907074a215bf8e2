#pragma once

#include <string>

// What the manufacturer wrote into the device.
class MfgItem {
 public:
  // Reads the serial number of the system from the first of these that holds one: the file that
  // the environment variable MFG_FILE names (where it is set, the only one read), the device
  // tree's serial number, the machine id. True and the first line that is not blank, without the
  // white space and NULs around it, at most 256 bytes; false when there is none, `serial` is then
  // unchanged.
  static bool GetSystemSerialNumber(std::string& serial);
};
