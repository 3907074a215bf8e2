#include "Findings.h"

#include "Encode.h"

namespace reader {

void Findings::Add(const std::string& where, const char* kind, const std::string& text) {
  const auto [place, isNew] = places_.try_emplace({where, kind}, found_.size());
  if (isNew) {
    found_.push_back({where, text, 0});
  } else {
    ++found_[place->second].more;
  }
}

std::string Findings::Text() const {
  std::string text;
  for (const Finding& finding : found_) {
    text += Printable(finding.where) + ": " + Printable(finding.text);
    if (finding.more > 0) text += " (and " + std::to_string(finding.more) + " more of this kind)";
    text += '\n';
  }
  return text;
}

}  // namespace reader
