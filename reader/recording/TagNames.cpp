#include "TagNames.h"

#include "Tags.h"

namespace reader {

std::string CreateTagNames() {
  std::string sql =
      "CREATE TEMP TABLE tag_name(tag INTEGER PRIMARY KEY, name TEXT, active_text TEXT, inactive_text TEXT);";
  for (const store::TagName& row : store::kTagNames) {
    sql += "INSERT INTO temp.tag_name VALUES(" + std::to_string(row.tag) + ",'" + row.name + "','" +
           row.active + "','" + row.inactive + "');";
  }
  return sql;
}

}  // namespace reader
