#pragma once

#include <string>

#include "Record.h"

namespace store {

// Statements that copy records from the attached database "source" into "main".

// How many tables and views of "main" are not the same in "source".
std::string CountDifferences();

// All of a table; or those from tick ?1 to ?2 among the sequence numbers ?3 to ?4.
std::string CopyAll(TableId table);
std::string CopyBetween(TableId table);

// The newest full states before tick ?1: their mark's sequence number, and their last record's; the mark of
// the first one after it.
std::string SelectFullStatesBefore();
std::string SelectFullStateAfter();
// How many records there are from sequence number ?1 to ?2.
std::string CountRecords();

// Sequence numbers of what came before tick ?1, looked for among the sequence numbers ?3 to ?4:
//   - the last record of a table;
//   - every record of a table that has several sources, with its source.
std::string SelectLast(TableId table);
std::string SelectSources(TableId table);

// Sequence numbers of what came after tick ?1, the range's end, and yet tells about the range, which
// begins at ?2:
//   - facts of the device, and the first clock anchor by GPS or that can be trusted at all, where the
//     copy has none yet;
//   - losses.
std::string SelectFacts(TableId table);
std::string SelectFirstGps();
std::string SelectFirstTrusted();
std::string SelectLosses();

inline constexpr TableId kFacts[] = {kMacTable, kSerialTable, kVersionTable, kConfigurationTable,
                                     kPreviousRunTable};

// Copies the record ?1 as restated, with the number ?2, at the tick ?3.
std::string Restate(TableId table);

}  // namespace store
