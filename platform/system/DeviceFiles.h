#pragma once

#include <cstddef>
#include <span>
#include <string>

// Reads facts about the device from files that the caller names.

// Returns at most `maxSize` bytes of a file; empty when it cannot be read. Never blocks on a pipe.
std::string ReadSmallFile(const std::string& path, std::size_t maxSize);

// Like SystemInformation::GetShortMacAddress; `directory` holds one directory per interface.
void MacAddressUnder(const std::string& directory, unsigned char (&mac)[6]);

// Like MfgItem::GetSystemSerialNumber: reads the first of `files` that holds a serial number.
bool FirstSerialNumber(std::span<const char* const> files, std::string& serial);
