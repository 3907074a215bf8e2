#pragma once

#include <string>

#include "seal/KeyFile.h"

namespace seal {

// The recorder's key file: the variable METADATA_KEY, by default /var/lib/metadatamgr/seal.key.
std::string KeyFilePath();

// The hardware address that the key file is bound to: "00:11:22:33:44:55", zeros if there is none.
std::string Hardware();

// Why a key file cannot be used, for people.
const char* TextOf(KeyFile::Outcome outcome);

}  // namespace seal
