#pragma once

#include <string>
#include <vector>

// A DataStoreNormal that keeps every call as one line of text, as
// "StateData 70 event 1234"; "initial" where the report flag is false. The watchdog's are among them.
std::vector<std::string>& StoreCalls();

// What GetCurrentSystemTick answers.
extern unsigned int gStoreTick;

// What the system's tick reads next; one more with each reading, unless it is not available.
extern unsigned int gSystemTick;
