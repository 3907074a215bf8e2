#pragma once

#include <string>

#include "BenchRun.h"

// Compares the events of a recording with the sent lists of the bench (DIR/sent): values and sender ticks, in
// order, for each kind of record. The recording may still be growing.

// Waits until both are equal. The drive must have two bookmarks, the last at its end.
void AwaitAllSent(const BenchRun& bench, const std::string& recording);
// Fails the test for each kind of record whose rows differ from the sent list.
void ExpectAllSent(const BenchRun& bench, const std::string& recording);
