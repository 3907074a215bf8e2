#include "VideoOption.h"

#include <charconv>
#include <cmath>
#include <filesystem>

namespace reader {
namespace {

namespace fs = std::filesystem;

constexpr double kMostSeconds = 1e7;

bool IsFile(const std::string& name) {
  std::error_code error;
  return fs::is_regular_file(name, error);
}

// Reads an offset in seconds: "1.5", "-2".
std::optional<std::int64_t> ReadOffsetMs(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (error != std::errc() || end != text.data() + text.size() || !(std::abs(seconds) <= kMostSeconds))
    return {};
  return std::llround(1000 * seconds);
}

// A file name may contain '=': if the whole text names a file, there is no offset.
std::optional<Video> ReadVideo(const std::string& given, Messages& messages) {
  if (IsFile(given)) return Video{given, 0};
  const std::size_t at = given.rfind('=');
  const std::string file = given.substr(0, at);
  if (!IsFile(file)) {
    messages.Problem("--video " + given + ": there is no such file");
    return {};
  }
  const auto offsetMs = ReadOffsetMs(std::string_view(given).substr(at + 1));
  if (!offsetMs) {
    messages.Problem("--video " + given + ": the offset is not a number of seconds");
    return {};
  }
  return Video{file, *offsetMs};
}

}  // namespace

void VideoOption::Declare(CLI::App& app) {
  app.add_option("--video", given_,
                 "a video to show beside the run, and when it begins: seconds after the first start of a\n"
                 "recording [0]; once for each camera")
      ->type_name("FILE[=OFFSET]")
      ->allow_extra_args(false);
}

std::optional<Videos> VideoOption::Find(const std::string& page, Messages& messages) const {
  const fs::path out = page == "-" ? "" : page;
  std::error_code error;
  const fs::path directory = fs::absolute(out, error).parent_path();
  Videos videos;
  for (const std::string& given : given_) {
    auto video = ReadVideo(given, messages);
    if (!video) return {};
    video->file = fs::proximate(fs::absolute(video->file, error), directory, error).generic_string();
    videos.push_back(*video);
  }
  return videos;
}

}  // namespace reader
