// The documents agree with the table of servers.
#include <regex>
#include <set>

#include "Documents.h"
#include "ipc/LinxServerNameList.h"
#include "system/Servers.h"

namespace {

std::string Text(const std::string& path) {
  return Joined(LinesOfFile(path));
}

// One number of each item of a server, as "10, 7".
template <typename Member>
std::string Numbers(const ServerRow& server, Member member) {
  std::string numbers;
  for (const ServedItem& item : server.items)
    numbers += (numbers.empty() ? "" : ", ") + std::to_string(item.*member);
  return numbers;
}

TEST(ServerTable, IsThatOfTheWireDocument) {
  Lines rows;
  for (const std::string& line : LinesOfFile(WIRE_DOCUMENT)) {
    if (std::regex_match(line, std::regex(R"(\| [A-Za-z]+ \| [0-9, ]+ \| `.*` ?.* \| [0-9, ]+ \|)")))
      rows.push_back(line);
  }
  ASSERT_EQ(rows.size(), std::size(servers::kAll)) << Joined(rows);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const ServerRow& server = servers::kAll[i];
    const std::string begin =
        std::string("| ") + server.name + " | " + Numbers(server, &ServedItem::id) + " | ";
    const std::string end = " | " + Numbers(server, &ServedItem::notificationId) + " |";
    EXPECT_TRUE(rows[i].starts_with(begin)) << begin << "\n" << rows[i];
    EXPECT_TRUE(rows[i].ends_with(end)) << end << "\n" << rows[i];
  }
}

TEST(ServerTable, HasTheNamesAndNumbersOfTheWireDocument) {
  const std::string text = Text(WIRE_DOCUMENT);
  for (unsigned int process = 0; process < 64; ++process) {
    const std::string& name = LinxServerNameList::Instance().Name(process);
    if (name.empty()) continue;
    EXPECT_NE(text.find("| " + std::to_string(process) + " | " + name + " |"), std::string::npos) << name;
  }
}

TEST(ServerTable, HasTheSwitchesOfTheDocuments) {
  std::set<std::string> switches;
  for (const ServerRow& server : servers::kAll) {
    if (server.offSwitch != nullptr && server.process != e_Process_StateMgr)
      switches.insert(server.offSwitch);
  }
  const std::regex name("NO_[A-Z]+");
  for (const char* document : {WIRE_DOCUMENT, EVENTS_DOCUMENT, PROCESS_MANUAL}) {
    const std::string text = Text(document);
    const std::set<std::string> told(std::sregex_token_iterator(text.begin(), text.end(), name), {});
    EXPECT_EQ(told, switches) << document;
  }
}

TEST(ServerTable, IsThatOfTheEventsDocument) {
  const std::string text = Text(EVENTS_DOCUMENT);
  for (const ServerRow& server : servers::kAll) {
    const std::string end =
        server.offSwitch == nullptr ? "s \\|" : std::string("s \\| `") + server.offSwitch + "` \\|";
    EXPECT_TRUE(
        std::regex_search(text, std::regex(std::string("\n\\| ") + server.name + " \\| [0-9]+ " + end)))
        << server.name;
  }
}

TEST(ServerTable, HasTheRolesOfTheBenchDocument) {
  const std::string text = Text(BENCH_DOCUMENT);
  for (const ServerRow& server : servers::kAll) {
    EXPECT_TRUE(
        std::regex_search(text, std::regex(std::string("\n\\| `vehiclebench role[^\n]*[ `]") + server.name)))
        << server.name;
  }
}

}  // namespace
