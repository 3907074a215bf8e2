#pragma once

// Facts about the device that the process runs on.
class SystemInformation {
 public:
  // The hardware address of the first network interface: eth0 where there is one, else the first
  // by name that has an address other than all zeros. All zeros when there is none.
  static void GetShortMacAddress(unsigned char (&mac)[6]);
};
