#include "SentRows.h"

#include <fnmatch.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "Tables.h"
#include "support/Connection.h"
#include "support/Eventually.h"
#include "support/LogText.h"
#include "system/Servers.h"

namespace {

// One kind of record that differs from what was sent. Both queries return two sort numbers before the values.
// The query `sent` reads the table `event`: the sent lines of these sources as (id, source, f), where f holds
// the values. The tables `part` (k: 0 to 8) and `input` (k, bit, signal) split one event into several rows.
struct Kind {
  const char* sources;  // a glob pattern
  const char* recorded;
  const char* sent;
};

const Kind kKinds[] = {
    {"bookmark", "SELECT seq, 0, sender_tick FROM bookmark", "SELECT id, 0, f->>0 FROM event"},
    // two processes send these, so only the ticks give the order
    {"*record-*", "SELECT sender_tick, 0, active FROM state WHERE event=1 AND signal=70",
     "SELECT f->>0+0, 0, source GLOB '*start' FROM event"},
    {"covert-*", "SELECT seq, 0, active, sender_tick FROM state WHERE event=1 AND signal=58",
     "SELECT id, 0, source='covert-on', f->>0 FROM event"},
    {"input",
     "SELECT seq, 0, signal, active, sender_tick FROM state WHERE event=1 AND signal IN (52,54,56,60,62,68)",
     "SELECT id, k, signal, (f->>1 & bit)<>0, f->>3 FROM event, input WHERE f->>0 & bit"},
    // the value at the subscription is an event too
    {"crash",
     "SELECT seq, 0, active, sender_tick FROM state WHERE event=1 AND signal=66 ORDER BY 1 LIMIT -1 OFFSET 1",
     "SELECT id, 0, f->>0, f->>1 FROM event"},
    {"", "SELECT seq, 0, signal FROM state WHERE event=1 AND signal NOT IN (52,54,56,58,60,62,64,66,68,70)",
     nullptr},
    {"", "SELECT seq, 0, text FROM string", nullptr},
    {"", "SELECT seq, 0, lost_table, count FROM loss", nullptr},

    {"gps", "SELECT seq, 0, valid FROM gps_state WHERE event=1",
     "SELECT id, 0, f->>13+0 NOT IN (0,7) FROM event"},
    {"gps",
     "SELECT seq, 0, latitude_e4min, longitude_e4min, altitude_dm, speed_deci_kmh, speed_deci_knots, "
     "course_deci_deg, quality, fix_dimensions, satellites_used, satellites_in_view, signal_db, utc_date, "
     "utc_time_ms, valid, sender_tick FROM gps WHERE event=1",
     "SELECT id, 0, (f->>0*600000 + f->>1*10000 + f->>2) * iif(f->>3+0=1,1,-1), "
     "(f->>4*600000 + f->>5*10000 + f->>6) * iif(f->>7+0=1,1,-1), f->>15, f->>9, f->>10, f->>11, f->>13, "
     "f->>14, f->>16, f->>12, f->>17, f->>8, f->>18, f->>19, f->>20 FROM event WHERE f->>13+0 NOT IN (0,7)"},
    {"gps", "SELECT seq, 0, speed, tag, sender_tick FROM speed WHERE event=1 AND source=1",
     "SELECT id, 0, f->>9/10, 0, f->>20 FROM event WHERE f->>13+0 NOT IN (0,7)"},
    {"gps", "SELECT seq, 0, valid FROM speed_valid WHERE event=1 AND source=1",
     "SELECT id, 0, 0 FROM event WHERE f->>13+0 IN (0,7)"},

    {"radar", "SELECT seq, 0, radar, valid FROM radar_state WHERE event=1",
     "SELECT id, 0, 1, f->>0 & 128 = 0 FROM event"},
    {"radar",
     "SELECT seq, 0, radar, speed1, speed2, speed3, direction, tag, sender_tick FROM radar WHERE event=1",
     "SELECT id, 0, 1, f->>2, f->>3, f->>4, 0, 0, f->>5 FROM event WHERE f->>0 & 128 = 0"},
    {"radar", "SELECT seq, 0, speed, tag, sender_tick FROM speed WHERE event=1 AND source<>1",
     "SELECT id, 0, f->>1, 0, f->>5 FROM event WHERE f->>0 & 128 = 0"},
    {"radar", "SELECT seq, 0, source, valid FROM speed_valid WHERE event=1 AND source<>1",
     "SELECT id, 0, 2, 0 FROM event WHERE f->>0 & 128"},

    {"mic*", "SELECT seq, 0, mic, present, sender_tick FROM mic_present WHERE event=1",
     "SELECT id, k, f->>(3*k), f->>(3*k+1), f->>12 FROM event, part WHERE source='mic' AND k<4 UNION ALL "
     "SELECT id, 0, f->>1, f->>2, f->>0 FROM event WHERE source='mic-message'"},
    {"mic*", "SELECT seq, 0, mic, active, sender_tick FROM mic_active WHERE event=1",
     "SELECT id, k, f->>(3*k), f->>(3*k+2), f->>12 FROM event, part WHERE source='mic' AND k<4 UNION ALL "
     "SELECT id, 0, f->>1, f->>3, f->>0 FROM event WHERE source='mic-message'"},
    // the item holds sensors 3 to 0; the rows are sensor 3, then 0 to 2
    {"temp", "SELECT seq, 0, sensor, temperature, sender_tick FROM temperature WHERE event=1",
     "SELECT id, (k+1)%4, k, f->>(3-k), f->>4 FROM event, part WHERE k<4"},
    {"camera*", "SELECT seq, 0, camera, state, sender_tick FROM camera WHERE event=1",
     "SELECT id, k, k, f->>(iif(k<3,k,coalesce((SELECT max(e.k) FROM part e WHERE e.k>4 AND f->>e.k+0 IN "
     "(1,2)),3))), f->>9 FROM event, part WHERE source='camera-entries' AND k<4 UNION ALL "
     "SELECT id, 0, f->>1, f->>2, f->>0 FROM event WHERE source='camera'"},
    {"stream", "SELECT seq, 0, stream, state, sender_tick FROM video_stream WHERE event=1",
     "SELECT id, 0, f->>1, f->>2, f->>0 FROM event"},
    {"quality",
     "SELECT seq, 0, stream, width, height, frames_per_second, bit_rate_kbps, sender_tick "
     "FROM stream_quality WHERE event=1",
     "SELECT id, k, k, f->>(4*k), f->>(4*k+1), f->>(4*k+2), f->>(4*k+3), f->>16 FROM event, part WHERE k<4"},
    // the item has no tick
    {"live-*",
     "SELECT seq, 0, stream, enabled, high_quality, camera, printf('%d.%d.%d.%d', address>>24, "
     "address>>16 & 255, address>>8 & 255, address & 255), port FROM live_stream WHERE event=1",
     "SELECT id, 0, substr(source,6), f->>0, f->>1, f->>2 & 255, f->>3, f->>4 FROM event"},

    {"system", "SELECT seq, 0, device_name, software_version FROM system_info WHERE event=1",
     "SELECT id, 0, f->>0, f->>1 FROM event"},
    {"recording",
     "SELECT seq, 0, pre_event_s, post_event_s, width, height, frames_per_second, bit_rate_kbps "
     "FROM recording_settings WHERE event=1",
     "SELECT id, 0, f->>0, f->>1, f->>2, f->>3, f->>4, f->>5 FROM event"},
};

// The sent lists as a table, attached to the recording.
class Tables {
 public:
  Tables(const std::string& sentDirectory, const std::string& recording) {
    Do("ATTACH '" + recording + "' AS recording");
    Do("CREATE TABLE part AS WITH t(k) AS (VALUES (0),(1),(2),(3),(4),(5),(6),(7),(8)) SELECT * FROM t");
    Do("CREATE TABLE input AS WITH t(k,bit,signal) AS (VALUES (0,0x8000,52),(1,0x10000,56),(2,0x20000,54),"
       "(3,0x4000,60),(4,0x80000,62),(5,0x2000,68)) SELECT * FROM t");
    Do("CREATE TABLE sent(id INTEGER PRIMARY KEY, source TEXT, f TEXT)");
    for (const auto& list : std::filesystem::directory_iterator(sentDirectory)) {
      for (const std::string& line : LinesOf(TextOfFile(list.path()))) Add(line);
    }
  }

  // Sorts the rows of a query by its first two columns, which are numbers, then removes these columns.
  Lines Ordered(const std::string& sql) {
    Lines rows = LinesOf(connection_.Rows("SELECT * FROM (" + sql + ") ORDER BY 1, 2"));
    for (std::string& row : rows) row.erase(0, row.find('|', row.find('|') + 1) + 1);
    return rows;
  }
  Lines Rows(const std::string& sql) { return LinesOf(connection_.Rows(sql)); }

 private:
  void Do(const std::string& sql) { EXPECT_EQ(connection_.Rows(sql), "") << sql; }
  // "_" stands for a blank.
  void Add(const std::string& line) {
    std::istringstream words(line);
    std::string source;
    std::string values;
    words >> source;
    for (std::string word; words >> word;) {
      std::replace(word.begin(), word.end(), '_', ' ');
      values.append(values.empty() ? "\"" : ",\"").append(word).append("\"");
    }
    Do("INSERT INTO sent(source, f) VALUES ('" + source + "', '[" + values + "]')");
  }

  Connection connection_{":memory:"};
};

// Two lists that must be equal.
struct Compared {
  std::string what;
  bool expected;  // the drive has such events
  Lines sent;
  Lines recorded;
};

bool HasKind(const char* source) {
  return std::any_of(std::begin(kKinds), std::end(kKinds),
                     [source](const Kind& kind) { return fnmatch(kind.sources, source, 0) == 0; });
}

// All other items are recorded as they are sent, in the table of the same name. If its first column is a
// number, the item has values for the numbers from 0 on, one row each, and a sender tick behind them. Else it
// has the values of one row, perhaps with a tick.
Compared CompareAsSent(Tables& tables, const std::string& source) {
  const auto* table = std::find_if(std::begin(store::kTables), std::end(store::kTables),
                                   [&source](const store::Table& any) { return any.name == source; });
  if (table == std::end(store::kTables)) return {"no kind and no table of " + source, true, {}, {}};
  const bool numbered = table->HasNumberedSources();
  const std::size_t values = table->ColumnCount() - (numbered ? 1 : 0);
  std::string recorded = "SELECT seq, 0";
  std::string sent = numbered ? "SELECT id, k, k" : "SELECT id, k";
  for (std::size_t i = 0; i < table->ColumnCount(); ++i) recorded.append(", ").append(table->columns[i].name);
  const std::string count = std::to_string(values);
  for (std::size_t i = 0; i < values; ++i) sent += ", f->>(k*" + count + "+" + std::to_string(i) + ")";
  const std::string parts = numbered ? "((json_array_length(f)-1)/" + count + ")" : "1";
  sent +=
      ", f->>(" + parts + "*" + count + ") FROM sent, part WHERE k<" + parts + " AND source='" + source + "'";
  recorded += std::string(", sender_tick FROM ") + table->name + " WHERE event=1";
  return {recorded, true, tables.Ordered(sent), tables.Ordered(recorded)};
}

std::vector<Compared> CompareSentWithRecorded(const BenchRun& bench, const std::string& recording) {
  Tables tables(bench.Path("sent"), recording);
  std::vector<Compared> all;
  std::string unknown = "SELECT DISTINCT source FROM sent WHERE 1";
  for (const Kind& kind : kKinds) {
    const std::string sources = std::string("source GLOB '") + kind.sources + "'";
    unknown.append(" AND NOT ").append(sources);
    Compared compared{kind.recorded, kind.sent != nullptr, {}, tables.Ordered(kind.recorded)};
    if (compared.expected)
      compared.sent = tables.Ordered("WITH event AS (SELECT * FROM sent WHERE " + sources + ") " + kind.sent);
    all.push_back(std::move(compared));
  }
  for (const ServerRow& server : servers::kAll) {
    for (const ServedItem& item : server.items) {
      if (HasKind(item.name)) continue;
      all.push_back(CompareAsSent(tables, item.name));
      unknown.append(" AND source<>'").append(item.name).append("'");
    }
  }
  all.push_back({"sources that no kind of record has", false, tables.Rows(unknown), {}});
  return all;
}

bool IsAllSent(const BenchRun& bench, const std::string& recording) {
  const auto compared = CompareSentWithRecorded(bench, recording);
  return std::all_of(compared.begin(), compared.end(),
                     [](const Compared& c) { return c.sent == c.recorded; });
}

}  // namespace

void AwaitAllSent(const BenchRun& bench, const std::string& recording) {
  ASSERT_TRUE(Eventually([&] { return Count(bench.Output(), "bookmark notice received") == 2; },
                         std::chrono::seconds(60)))
      << bench.Output();
  (void)Eventually([&] { return IsAllSent(bench, recording); });
  ExpectAllSent(bench, recording);
}

void ExpectAllSent(const BenchRun& bench, const std::string& recording) {
  for (const Compared& compared : CompareSentWithRecorded(bench, recording)) {
    EXPECT_EQ(compared.recorded, compared.sent) << compared.what;
    EXPECT_NE(compared.sent.empty(), compared.expected) << compared.what;
  }
}
