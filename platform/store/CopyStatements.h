#pragma once

#include <string>

#include "Record.h"

namespace store {

// Statements that copy records from the attached database "source" into "main". Restated records keep
// their sequence numbers; ?1 is the tick at which they are restated.

// How many tables and views of "main" are not the same in "source".
std::string CountDifferences();

// All of a table; or those from tick ?1 to ?2.
std::string CopyAll(TableId table);
std::string CopyBetween(TableId table);

// The last record before ?1 of a table that has one source, or that tells the clock.
std::string RestateLast(TableId table);
// Sequence number and source of each record before ?1, for a table with several; then one of them, ?2.
std::string SelectSources(TableId table);
std::string RestateOne(TableId table);

// What came after the range's end, ?1, and yet tells about it; ?2 is the range's begin.
//   - the device's facts, where none came before;
//   - the first clock anchor by GPS, and the first that can be trusted at all, where none came before;
//   - losses.
std::string RestateFacts(TableId table);
std::string RestateFirstGps();
std::string RestateFirstTrusted();
std::string RestateLosses();

inline constexpr TableId kFacts[] = {kMacTable, kSerialTable, kVersionTable, kConfigurationTable,
                                     kPreviousRunTable};

}  // namespace store
