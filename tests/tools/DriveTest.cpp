// A drive of the bench through the real MetadataMgr, and what people see of it with the reader: while it
// is recorded and afterwards, read back by SQLite's shell and compared with what the bench sent.
#include <algorithm>
#include <fstream>
#include <sstream>

#include "ReaderFixture.h"
#include "bench/BenchRun.h"
#include "bench/SentRows.h"
#include "support/Eventually.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

// The default drive, up to the quit.
std::string DriveWithoutItsEnd() {
  std::ostringstream text;
  text << std::ifstream(DEFAULT_DRIVE).rdbuf();
  std::string drive = text.str();
  return drive.substr(0, drive.rfind('\n', drive.find(" quit")) + 1);
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}

bool AllIsRecorded(const std::vector<Compared>& compared) {
  return std::all_of(compared.begin(), compared.end(),
                     [](const Compared& c) { return c.sent == c.recorded; });
}

class DriveTest : public testing::Test {
 protected:
  std::string Recording() const { return bench_.Path("mnt/metadata/metadata.000001.db"); }

  std::vector<std::string> InTheCar(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(),
                     {"env", "LINX_IPC_DIR=" + bench_.Path("ipc"), "METADATA_ROOT=" + bench_.Path("mnt"),
                      "METADATA_SHM=metadata-bench-" + std::to_string(bench_.Id()), METADATA_PROGRAM});
    return arguments;
  }
  Ran Reader(const std::vector<std::string>& arguments) const { return RunProgram(InTheCar(arguments)); }

  // A recording's tables again, made by SQLite's shell of a dump; `value` is SQL for a field of a line.
  std::string Rebuild(const std::string& import, const std::string& (*value)(std::string& name)) {
    std::string script = import;
    Connection recording(Recording());
    std::istringstream tables(recording.Rows(
        "SELECT name FROM sqlite_master WHERE type='table' AND name NOT IN ('tag_name','progress')"));
    for (std::string table; std::getline(tables, table);) {
      script += "CREATE TABLE " + table + "(seq INTEGER, tick INTEGER, sender_tick INTEGER, event INTEGER";
      std::string values;
      std::istringstream columns(
          recording.Rows("SELECT name, type FROM pragma_table_info('" + table + "') WHERE cid>3"));
      for (std::string column; std::getline(columns, column);) {
        const std::string name = column.substr(0, column.find('|'));
        std::string field = name == "source" ? table + "_" + name : name;
        script += ", " + name + " " + column.substr(name.size() + 1);
        values += ", " + value(field);
      }
      const auto of = [value](std::string name) { return value(name); };
      script += ");\nINSERT INTO " + table + " SELECT " + of("seq") + ", " + of("tick") + ", nullif(" +
                of("sender_tick") + ",''), CASE " + of("event") +
                " WHEN 'initial' THEN 0 WHEN 'event' THEN 1 ELSE 2 END" + values + " FROM lines WHERE " +
                of("table") + "='" + table + "';\n";
    }
    const std::string path = directory_.Path("rebuilt.db");
    std::filesystem::remove(path);
    const Ran ran = RunProgram({"sqlite3", path, ".read " + directory_.Write("script.sql", script)});
    EXPECT_EQ(ran.said, "");
    return path;
  }

  std::string RebuildFromCsv(const std::string& csv) {
    return Rebuild(".mode csv\n.import " + directory_.Write("drive.csv", csv) + " lines\n",
                   [](std::string& name) -> const std::string& { return name = '"' + name + '"'; });
  }
  std::string RebuildFromJson(const std::string& lines) {
    return Rebuild("CREATE TABLE lines(line);\n.mode ascii\n.separator \"\\037\" \"\\n\"\n.import " +
                       directory_.Write("drive.jsonl", lines) + " lines\n",
                   [](std::string& name) -> const std::string& { return name = "(line->>'" + name + "')"; });
  }

  TempDir directory_;
  BenchRun bench_;
};

TEST_F(DriveTest, CanBeWatchedAndReadBack) {
  if (!IsInstalled("sqlite3")) GTEST_SKIP() << "sqlite3 is not installed";
  bench_.Drive(DriveWithoutItsEnd());
  std::filesystem::create_directories(bench_.Path("mnt/metadata"));
  bench_.Start({"--speed", "10"});
  const Child follower([&] {
    return ExecInto(InTheCar({"follow", "--format", "jsonl"}), directory_.Path("followed"),
                    directory_.Path("follower"));
  });
  ASSERT_TRUE(Eventually([&] { return Count(bench_.Output(), "bookmark notice received") == 2; },
                         std::chrono::seconds(60)))
      << bench_.Output();
  ASSERT_TRUE(
      Eventually([&] { return AllIsRecorded(CompareSentWithRecorded(bench_.Path("sent"), Recording())); }));

  // While it is recorded.
  for (const Compared& c :
       CompareSentWithRecorded(bench_.Path("sent"), RebuildFromCsv(Reader({"dump", "--format", "csv"}).out)))
    EXPECT_EQ(c.sent, c.recorded) << c.what;
  const Ran info = Reader({"info"});
  EXPECT_THAT(info.out,
              AllOf(HasSubstr(", being recorded\n"), HasSubstr("vehicle            unit-12, KV 1234\n"),
                    HasSubstr("  temperature 0      every ")));
  EXPECT_THAT(Reader({"live"}).out,
              AllOf(HasSubstr("record        kept by MetadataMgr\n"), HasSubstr("place         42\xC2\xB0")));
  EXPECT_EQ(Reader({"ask", "ping"}).out, "MetadataMgr is there\n");
  EXPECT_THAT(Reader({"ask", "tick"}).out, MatchesRegex("[1-9][0-9]*\n"));
  EXPECT_EQ(Reader({"ask", "loglevel", "0x87"}).out, "135\n");
  EXPECT_EQ(Reader({"ask", "loglevel"}).out, "135\n");
  EXPECT_EQ(Reader({"check"}).status, 0);

  EXPECT_EQ(bench_.Send({"quit"}), 0);
  ASSERT_EQ(bench_.Finish(), 0) << bench_.Output();
  const Ran dump = Reader({"dump", "--format", "jsonl"});
  EXPECT_THAT(dump.said, IsEmpty());
  for (const Compared& c : CompareSentWithRecorded(bench_.Path("sent"), RebuildFromJson(dump.out)))
    EXPECT_EQ(c.sent, c.recorded) << c.what;
  EXPECT_TRUE(Eventually([&] { return directory_.Read("followed") == dump.out; }))
      << "everything, since there was nothing when it began; " << directory_.Read("follower");
  EXPECT_THAT(Reader({"check"}).out, MatchesRegex("Good: 1 run, 1 file, [0-9]+ records\n"));
  EXPECT_THAT(Reader({"state", "--at", "crash"}).out, AllOf(HasSubstr("crash                detected\n"),
                                                            HasSubstr("recording            started\n")));
}

TEST_F(DriveTest, QuitLetsTheProcessEndInOrder) {
  bench_.Drive("0 ping\n1000 ping\n");
  bench_.Start();
  ASSERT_TRUE(bench_.Said("ping: answered")) << bench_.Output();
  const Ran quit = Reader({"ask", "quit"});
  EXPECT_EQ(quit.status, 0) << quit.said;
  EXPECT_THAT(Reader({"info"}).out, HasSubstr(", clean end\n"));
  const Ran ping = Reader({"ask", "ping"});
  EXPECT_EQ(ping.status, 1);
  EXPECT_EQ(ping.said, "metadata: MetadataMgr is not there\n");
  EXPECT_EQ(bench_.Finish(), 1) << "the bench did not ask for that";
}

}  // namespace
