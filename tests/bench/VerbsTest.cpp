#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "Processes.h"
#include "Publications.h"
#include "Roles.h"
#include "StateMgr.h"
#include "Verbs.h"

namespace {

using testing::HasSubstr;

// The names of the verbs that a process performs.
template <typename Process>
std::set<std::string> PerformedBy(const Process& process) {
  std::set<std::string> names;
  for (const auto& [name, action] : process.GetActions()) names.insert(name);
  return names;
}

bool IsServer(e_Process process) {
  const auto rows = Publications();
  return std::any_of(rows.begin(), rows.end(),
                     [process](const Publication& row) { return row.server == process; });
}

// The names of the verbs that the table gives to it.
std::set<std::string> TableRowsOf(e_Process process) {
  std::set<std::string> names;
  for (const Verb& verb : Verbs()) {
    const std::string performer = verb.performer;
    if (performer == ProcessName(process) || (performer == kNamedServer && IsServer(process))) {
      names.insert(NameOf(verb));
    }
  }
  return names;
}

TEST(Verbs, ArePerformedByTheProcessThatTheTableNames) {
  EXPECT_EQ(PerformedBy(StateMgr({})), TableRowsOf(e_Process_StateMgr));
  std::set<std::string> performers{"StateMgr", kBenchName, kNamedServer};
  for (const RoleRow& role : Roles()) {
    const std::string& name = ProcessName(role.process);
    EXPECT_EQ(PerformedBy(*role.make(role.process)), TableRowsOf(role.process)) << name;
    performers.insert(name);
  }
  for (const Verb& verb : Verbs()) EXPECT_EQ(performers.count(verb.performer), 1U) << verb.pattern;
}

TEST(Verbs, GoToTheServerThatTheFirstArgumentNames) {
  Command command;
  std::string error;
  ASSERT_TRUE(ParseCommand({"late", "MicMgr", "5"}, command, error)) << error;
  EXPECT_EQ(PerformerOf(command), "MicMgr");
  ASSERT_TRUE(ParseCommand({"kill", "MicMgr"}, command, error)) << error;
  EXPECT_EQ(PerformerOf(command), kBenchName);
}

TEST(Verbs, HaveArgumentsOfKnownTypesAndHelp) {
  for (const Verb& verb : Verbs()) {
    const std::size_t verbWords = SplitWords(NameOf(verb)).size();
    const Words words = SplitWords(verb.pattern);
    for (std::size_t i = verbWords; i < words.size(); ++i) {
      std::string name = words[i];
      std::erase_if(name, [](char c) { return c == '[' || c == ']'; });
      if (name == "...") continue;
      EXPECT_TRUE(std::any_of(ArgumentTypes().begin(), ArgumentTypes().end(),
                              [&name](const ArgumentType& type) { return type.name == name; }))
          << verb.pattern;
    }
    EXPECT_THAT(VerbHelp(), HasSubstr(verb.pattern));
    EXPECT_THAT(VerbHelp(), HasSubstr(verb.help));
  }
}

}  // namespace
