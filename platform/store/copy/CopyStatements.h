#pragma once

#include <string>

#include "Tables.h"

namespace store {

// Statements that copy records from the attached database "source" into "main".

// Number of tables and views of "main" that differ in "source".
std::string CountDifferences();

// Copies all records of a table; or those from tick ?1 to ?2 with sequence numbers ?3 to ?4.
std::string CopyAll(TableId table);
std::string CopyBetween(TableId table);

// The newest full states before tick ?1: sequence numbers of their row of full_state and of their last
// record. SelectFullStateAfter: the row of the first full state after tick ?1.
std::string SelectFullStatesBefore();
std::string SelectFullStateAfter();
// Number of records from sequence number ?1 to ?2.
std::string CountRecords();

// Sequence numbers, from ?3 to ?4, of records before tick ?1:
//   - SelectLast: the last record of a table;
//   - SelectSources: every record of a table with several sources, with its source.
std::string SelectLast(TableId table);
std::string SelectSources(TableId table);

// Sequence numbers of records after the range that describe it; ?1 is its end, ?2 its begin:
//   - SelectFacts: facts about the device, unless the copy has them;
//   - SelectFirstGps, SelectFirstTrusted: the first such clock anchor, unless the copy has one;
//   - SelectLosses: losses within the range.
std::string SelectFacts(TableId table);
std::string SelectFirstGps();
std::string SelectFirstTrusted();
std::string SelectLosses();

inline constexpr TableId kFacts[] = {kMacTable, kSerialTable, kVersionTable, kConfigurationTable,
                                     kPreviousRunTable};

// Copies record ?1 as restated, with sequence number ?2 and tick ?3.
std::string Restate(TableId table);

}  // namespace store
