#pragma once

#include <string>

// Endpoint names of the system's processes.
class LinxServerNameList {
 public:
  static const LinxServerNameList& Instance();

  // The endpoint name of the process with this number (e_Process); empty when the recorder knows
  // none.
  const std::string& Name(unsigned int process) const;

  // Whether a process of the table has that endpoint name.
  bool Has(const std::string& name) const;
};
