#pragma once

#include <cstddef>
#include <span>
#include <string>

// The readers of the device's facts, with their places as parameters.

// At most `maxSize` bytes of a file; empty when it cannot be read. Never waits for a writer.
std::string ReadSmallFile(const std::string& path, std::size_t maxSize);

// As SystemInformation::GetShortMacAddress; `directory` holds one directory per interface.
void MacAddressUnder(const std::string& directory, unsigned char (&mac)[6]);

// As MfgItem::GetSystemSerialNumber: the first of `files` that holds a serial number.
bool FirstSerialNumber(std::span<const char* const> files, std::string& serial);
