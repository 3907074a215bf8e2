#include "Tables.h"

#include "Tags.h"

namespace store {
namespace {

std::string Numbered(const std::string& name, std::int64_t number) {
  return name + ' ' + std::to_string(number);
}

}  // namespace

std::string SourceOf(const Table& table, std::int64_t key) {
  if (table.naming == Naming::kPlain) return table.source;
  if (table.naming == Naming::kTags) {
    for (const TagName& tag : kTagNames) {
      if (std::int64_t{tag.tag} == key) return tag.name;
    }
  }
  if (table.naming == Naming::kSpeeds) {
    for (const SpeedSource& source : kSpeedSources) {
      if (source.number == key) return std::string(table.source) + ' ' + source.name;
    }
  }
  return Numbered(table.source, key);
}

std::string SourceSql(const Table& table) {
  const std::string name = table.source;
  if (table.naming == Naming::kPlain) return "'" + name + "'";
  const std::string key = table.columns[0].name;
  std::string numbered = "'" + name + " '||" + key;
  if (table.naming == Naming::kTags) {
    return "coalesce((SELECT name FROM tag_name WHERE tag_name.tag=" + std::string(table.name) + '.' + key +
           ")," + numbered + ")";
  }
  if (table.naming == Naming::kSpeeds) {
    std::string sql = "CASE " + key;
    for (const SpeedSource& source : kSpeedSources) {
      sql += " WHEN " + std::to_string(source.number) + " THEN '" + name + ' ' + source.name + "'";
    }
    return sql + " ELSE " + numbered + " END";
  }
  return numbered;
}

}  // namespace store
