#include "ReportPage.h"

#include "PageText.h"

const char* ReportHead() {
  return kPageHead;
}

const char* ReportTail() {
  return kPageTail;
}
