#pragma once

// Terminate handler of every process: logs the active exception, if there is one, with mask 1
// and aborts.
[[noreturn]] void KorvaneTerminateHandler();
