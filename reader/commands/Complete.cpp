#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>

#include "Declarations.h"
#include "Instant.h"
#include "Selection.h"

namespace reader {

// Lists completions of a command line for metadata.bash.
namespace {

using Words = std::vector<std::string>;

// The command named by the words before the last one.
const CLI::App* CommandOf(const CLI::App& root, const Words& words) {
  const CLI::App* command = &root;
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    const auto next =
        command->get_subcommands([&](const CLI::App* sub) { return sub->check_name(words[i]); });
    if (!next.empty()) command = next.front();
  }
  return command;
}

// Values of an option type such as "TEXT:{text,csv,jsonl}".
Words ValuesOf(const std::string& type) {
  if (type == "T") return EventNames();
  if (type == "SOURCES") return SelectionWords();
  const std::size_t begin = type.find('{');
  const std::size_t end = type.find('}');
  if (begin == std::string::npos || end == std::string::npos) return {};
  return CLI::detail::split(type.substr(begin + 1, end - begin - 1), ',');
}

// Lists the sub-commands, and the options if requested. The shell completes file names.
Words NamesIn(const CLI::App& command, bool wantsOptions) {
  Words words;
  for (const CLI::App* sub : command.get_subcommands([](const CLI::App*) { return true; })) {
    if (!sub->get_group().empty()) words.push_back(sub->get_name());
  }
  if (!wantsOptions) return words;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) words.push_back("--" + name);
  }
  return words;
}

// The option that takes the last word as its value; null if there is none.
const CLI::Option* OptionOf(const CLI::App& command, const Words& words) {
  if (words.size() < 2) return nullptr;
  const CLI::Option* option = command.get_option_no_throw(words[words.size() - 2]);
  const bool takesValue =
      option != nullptr && !option->get_positional() && option->get_items_expected_max() > 0;
  return takesValue ? option : nullptr;
}

int Complete(const CLI::App& root, Words words) {
  words.erase(std::remove(words.begin(), words.end(), "="), words.end());  // bash splits at "="
  const CLI::App* command = CommandOf(root, words);
  const CLI::Option* option = OptionOf(*command, words);
  const std::string last = words.empty() ? "" : words.back();
  const std::string listed = option == nullptr ? "" : last.substr(0, last.rfind(',') + 1);
  for (const std::string& word :
       option == nullptr ? NamesIn(*command, last.starts_with('-')) : ValuesOf(option->get_type_name())) {
    (void)std::printf("%s%s\n", listed.c_str(), word.c_str());
  }
  return kGood;
}

}  // namespace

Action DeclareComplete(CLI::App& app) {
  app.group("");
  app.set_help_flag();
  app.prefix_command();
  return [&app] { return Complete(*app.get_parent(), app.remaining()); };
}

}  // namespace reader
