#pragma once

namespace ipc {

// Whether an observer may send this message. Observers may ask and subscribe; only the system may steer a
// process or send data that is recorded.
bool OpenToObservers(unsigned int type);

// The type of the answer to a refused request of an observer, one byte of 0. Returns 0 when the request gets
// no answer.
unsigned int RefusalOf(unsigned int type);

// Whether a message keeps the receiver busy for seconds.
bool IsLongWork(unsigned int type);

}  // namespace ipc
