#pragma once

// Returns the text of an environment variable, or null when it is not set. The environment owns the text.
const char* KvGetenv(const char* name);

// The same for a variable that holds a path or a name: null also when it is empty.
const char* KvGetenvText(const char* name);
