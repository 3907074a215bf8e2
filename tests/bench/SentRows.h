#pragma once

#include <string>

#include "BenchRun.h"

// The events in a recording are compared with the lists of what the bench sent (DIR/sent): for each kind of
// record its values and the sender's tick, in order. A recording that is under way may be read.

// Waits until that is all the same, after a drive with two bookmarks, the last of them at its end.
void AwaitAllSent(const BenchRun& bench, const std::string& recording);
// Fails the test for each kind of record of which something else was recorded than sent.
void ExpectAllSent(const BenchRun& bench, const std::string& recording);
