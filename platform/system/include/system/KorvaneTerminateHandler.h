#pragma once

// Terminate handler of every process: logs the active exception, if any, with mask 1 and aborts.
[[noreturn]] void KorvaneTerminateHandler();
