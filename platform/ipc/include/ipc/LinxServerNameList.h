#pragma once

#include <string>

// Endpoint names of the system's processes.
class LinxServerNameList {
 public:
  static const LinxServerNameList& Instance();

  // Returns the endpoint name of the process with this number (e_Process); empty when unknown.
  const std::string& Name(unsigned int process) const;

  // Whether a process of the system has that endpoint name.
  bool Has(const std::string& name) const;
};
