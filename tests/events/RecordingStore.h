#pragma once

#include <string>
#include <vector>

// A DataStoreNormal that keeps every call as one line of text, as
// "StateData 70 event 1234"; "initial" where the report flag is false.
std::vector<std::string>& StoreCalls();

// What GetCurrentSystemTick answers.
extern unsigned int gStoreTick;
