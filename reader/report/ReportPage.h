#pragma once

// The page of a report: what stands before its data, an array of runs in JSON, and behind it.
const char* ReportHead();
const char* ReportTail();
