// The documents agree with the table of servers.
#include <algorithm>
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

// The pattern of a server's row in a document.
TEST(ServerTable, IsThatOfTheDocuments) {
  const struct {
    const char* document;
    std::string (*row)(const ServerRow& server);
  } kDocuments[] = {
      {WIRE_DOCUMENT,
       [](const ServerRow& server) {
         return std::string("\\| ") + server.name + " \\| " + Numbers(server, &ServedItem::id) +
                " \\| `.*` ?.* \\| " + Numbers(server, &ServedItem::notificationId) + " \\|";
       }},
      {EVENTS_DOCUMENT,
       [](const ServerRow& server) {
         const std::string offSwitch =
             server.offSwitch == nullptr ? "" : std::string("`") + server.offSwitch + "` ";
         return std::string("\\| ") + server.name + " \\| [0-9]+ s \\| " + offSwitch + "\\|.*";
       }},
      {BENCH_DOCUMENT,
       [](const ServerRow& server) {
         return std::string("\\| `vehiclebench role.*[ `]") + server.name + ".*";
       }},
  };
  for (const auto& document : kDocuments) {
    const Lines lines = LinesOfFile(document.document);
    for (const ServerRow& server : servers::kAll) {
      const std::regex row(document.row(server));
      EXPECT_TRUE(
          std::ranges::any_of(lines, [&row](const std::string& line) { return std::regex_match(line, row); }))
          << document.document << " " << server.name;
    }
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

}  // namespace
