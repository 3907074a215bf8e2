#pragma once

#include <sqlite3.h>

#include <string>

// A connection to a recording, as another program has it.
class Connection {
 public:
  explicit Connection(const std::string& path, const char* vfs = nullptr) {
    sqlite3_open_v2(path.c_str(), &handle_, SQLITE_OPEN_READWRITE, vfs);
  }
  ~Connection() { sqlite3_close(handle_); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Runs a query. Columns are separated by "|", rows end with a newline. On failure returns the error text.
  std::string Rows(const std::string& sql) {
    std::string rows;
    char* error = nullptr;
    const auto append = [](void* context, int count, char** values, char**) {
      auto& text = *static_cast<std::string*>(context);
      for (int i = 0; i < count; ++i)
        text.append(i == 0 ? "" : "|").append(values[i] == nullptr ? "NULL" : values[i]);
      text += "\n";
      return 0;
    };
    sqlite3_exec(handle_, sql.c_str(), append, &rows, &error);
    if (error != nullptr) rows += error;
    sqlite3_free(error);
    return rows;
  }

 private:
  sqlite3* handle_ = nullptr;
};
