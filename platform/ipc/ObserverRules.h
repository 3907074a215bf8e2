#pragma once

namespace ipc {

// What an observer may say. It may ask and follow; whatever would steer a process or be recorded is the
// system's alone.
bool OpenToObservers(unsigned int type);

// The message type in which an observer is answered one byte of 0 to a request that is refused; 0: it gets
// no answer.
unsigned int RefusalOf(unsigned int type);

// Whether a message keeps the receiver busy for seconds.
bool IsLongWork(unsigned int type);

}  // namespace ipc
