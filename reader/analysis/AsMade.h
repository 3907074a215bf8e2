#pragma once

#include <string>

#include "Recording.h"

namespace reader {

// Compares everything in a recording but its records and seals with what the store makes: schema, names of
// tags, progress. Returns the first difference; empty: none.
std::string DifferenceFromMade(Recording& file);

}  // namespace reader
