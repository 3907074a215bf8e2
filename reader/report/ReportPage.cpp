#include "ReportPage.h"

#include "PageText.h"

namespace reader {

std::string ReportHead(bool videos) {
  constexpr std::string_view kPolicy = "style-src 'unsafe-inline'";
  std::string head = kPageHead;
  if (videos) head.insert(head.find(kPolicy) + kPolicy.size(), "; media-src 'self' file:");
  return head;
}

std::string ReportTail() {
  std::string tail = kPageMiddle;
  for (const char* script : kPageScripts) tail += script;
  return tail + kPageEnd;
}

}  // namespace reader
