#pragma once

// The text of an environment variable, or null when it does not exist. The text belongs to the
// environment.
const char* KvGetenv(const char* name);
