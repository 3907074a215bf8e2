#include "FailingMedium.h"

Verdict FailingMedium::Before(const FileEvent& event) {
  if (!fault_.anyOp && event.op != fault_.op) return {};
  ++count_;
  const bool fails = !healed_ && (fault_.forEver ? Failed() : count_ == nth_);
  if (!fails) return {};
  return {fault_.code, fault_.half ? event.data.size() / 2 : 0};
}
