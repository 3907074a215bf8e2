#pragma once

// Facts about the device that the process runs on.
class SystemInformation {
 public:
  // Gets the hardware address of eth0 if it has one, else of the first interface by name that has an address
  // other than all zeros. All zeros when no interface has one.
  static void GetShortMacAddress(unsigned char (&mac)[6]);
};
