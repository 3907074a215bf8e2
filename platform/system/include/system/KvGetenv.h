#pragma once

// The text of an environment variable, or null when it does not exist. The text belongs to the
// environment.
const char* KvGetenv(const char* name);

// The same for a variable that holds a path or a name: null also where it is empty.
const char* KvGetenvText(const char* name);
