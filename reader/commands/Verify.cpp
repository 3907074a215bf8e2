#include <CLI/CLI.hpp>
#include <charconv>
#include <fstream>
#include <map>

#include "Declarations.h"
#include "Encode.h"
#include "FindFiles.h"
#include "JsonWriter.h"
#include "Output.h"
#include "SealCheck.h"
#include "seal/SealText.h"

namespace reader {
namespace {

using seal::Verdict;

struct VerdictRow {
  const char* text;
  int status;  // the highest one of all files is the exit status
};
constexpr VerdictRow kVerdicts[] = {
    {"proven", 0},
    {"proven, except for the end", 3},
    {"consistent, not proven", 3},
    {"altered", 6},
    {"incomplete", 5},
    {"cannot tell", 4},
};

const VerdictRow& Of(Verdict verdict) {
  return kVerdicts[static_cast<std::size_t>(verdict)];
}

struct VerifyOptions {
  Recordings recordings;
  std::string key;
  std::string keys;
  std::string noted;
  bool json = false;
};

// The keys of a file with one key a line; text after the key is ignored, as is a line that begins with "#".
bool ReadKeys(const std::string& path, std::vector<seal::PublicKey>& keys) {
  std::ifstream file(path);
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line.front() == '#') continue;
    if (!seal::ParseKey(line.substr(0, line.find(' ')), keys.emplace_back())) return false;
  }
  return file.eof() && !keys.empty();
}

bool TakeKeys(const VerifyOptions& options, std::vector<seal::PublicKey>& keys) {
  const bool good = (options.key.empty() || seal::ParseKey(options.key, keys.emplace_back())) &&
                    (options.keys.empty() || ReadKeys(options.keys, keys));
  if (!good) (void)std::fprintf(stderr, "metadata: a key is 64 hexadecimal digits\n");
  return good;
}

// "NUMBER:FINGERPRINT", as "metadata ask seal" prints it.
bool TakeNoted(const std::string& text, NotedSeal& noted) {
  const std::size_t colon = text.find(':');
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), noted.number);
  noted.fingerprint = colon == std::string::npos ? "" : text.substr(colon + 1);
  const bool good = error == std::errc{} && end == text.data() + colon && noted.number > 0 &&
                    noted.fingerprint.size() == 16;
  if (!good) (void)std::fprintf(stderr, "metadata: a noted seal is NUMBER:FINGERPRINT\n");
  return good;
}

std::string Where(const SealFinding& finding) {
  if (finding.number == 0) return {};
  return "seal " + std::to_string(finding.number) + ", records " + std::to_string(finding.firstSeq) + " to " +
         std::to_string(finding.lastSeq) + ": ";
}

std::string Line(const SealFinding& finding) {
  if (finding.empty) return "empty";
  std::string line = Of(finding.verdict).text;
  if (!finding.why.empty()) line += ": " + Where(finding) + finding.why;
  if (finding.verdict == Verdict::kTail && finding.tail != 0) {
    line += ": proven up to record " + std::to_string(finding.provenTo) + ", " +
            std::to_string(finding.tail) + (finding.tail == 1 ? " commit" : " commits") + " more, consistent";
  }
  return line;
}

// The verdict of a recorder's files together: the worst.
struct Summary {
  Verdict verdict = Verdict::kProven;
  std::int64_t firstSeal = 0;
  seal::Place lastSeal;
};

std::map<seal::PublicKey, Summary> ByRecorder(const std::vector<SealFinding>& findings) {
  std::map<seal::PublicKey, Summary> recorders;
  for (const SealFinding& finding : findings) {
    if (finding.empty) continue;
    Summary& summary = recorders[finding.root];
    if (Of(finding.verdict).status > Of(summary.verdict).status) summary.verdict = finding.verdict;
    if (summary.firstSeal == 0) summary.firstSeal = finding.firstSeal;
    summary.lastSeal = finding.lastSeal;
  }
  return recorders;
}

std::string NameOf(const seal::PublicKey& root) {
  return root == seal::PublicKey{} ? "" : seal::Fingerprint(root);
}

void WriteVerdicts(const std::vector<SealFinding>& findings, std::string& out) {
  for (const SealFinding& finding : findings) out += finding.path + ": " + Line(finding) + '\n';
  for (const auto& [root, summary] : ByRecorder(findings)) {
    const std::string name = NameOf(root);
    out += (name.empty() ? "No recorder's key" : "Recorder " + name) + ": ";
    out += summary.verdict == Verdict::kProven ? "whole, proven" : Of(summary.verdict).text;
    if (!name.empty() && summary.lastSeal.number != 0)
      out += "; seals " + std::to_string(summary.firstSeal) + " to " +
             std::to_string(summary.lastSeal.number) + " (" + seal::Fingerprint(summary.lastSeal.hash) + ")";
    out += '\n';
  }
}

void WriteVerdictsJson(const std::vector<SealFinding>& findings, std::string& out) {
  JsonWriter json(out);
  json.Object().Array("recorders");
  for (const auto& [root, summary] : ByRecorder(findings)) {
    json.Object().Text("fingerprint", NameOf(root));
    json.Text("verdict", Of(summary.verdict).text);
    json.Number("first_seal", summary.firstSeal);
    json.Number("last_seal", summary.lastSeal.number);
    json.Text("last_seal_fingerprint", seal::Fingerprint(summary.lastSeal.hash));
    json.EndObject();
  }
  json.EndArray();
  json.Array("files");
  for (const SealFinding& finding : findings) {
    json.Object().Text("file", finding.path);
    json.Text("recorder", NameOf(finding.root));
    json.Text("verdict", finding.empty ? "empty" : Of(finding.verdict).text);
    json.Text("why", finding.why);
    json.Number("records", finding.records);
    json.Number("proven_to", finding.provenTo);
    json.Number("tail_commits", finding.tail);
    json.Number("seal", finding.number);
    json.Number("first_record", finding.firstSeq);
    json.Number("last_record", finding.lastSeq);
    json.EndObject();
  }
  json.EndLine();
}

int Verify(const VerifyOptions& options) {
  std::vector<seal::PublicKey> keys;
  NotedSeal noted;
  const bool hasNoted = !options.noted.empty();
  if (!TakeKeys(options, keys) || (hasNoted && !TakeNoted(options.noted, noted))) return kUsage;
  Messages messages;
  const std::vector<std::string> files = FindFiles(options.recordings.Paths(), messages);
  SealCheck check(keys);
  if (hasNoted) check.Expect(noted);
  const std::vector<SealFinding> findings = check.Verify(files);
  if (hasNoted && !noted.found) messages.Problem("the noted seal " + options.noted + " is not there");
  int status = hasNoted && !noted.found ? Of(Verdict::kIncomplete).status : messages.Status();
  for (const auto& [root, summary] : ByRecorder(findings))
    status = std::max(status, Of(summary.verdict).status);
  if (ByRecorder(findings).empty()) status = std::max(status, Of(Verdict::kCannotTell).status);
  Output out(Output::Kind::kText);
  (options.json ? WriteVerdictsJson : WriteVerdicts)(findings, out.Text());
  return out.Flush() ? status : std::max<int>(status, kFinding);
}

}  // namespace

Action DeclareVerify(CLI::App& app) {
  auto options = std::make_shared<VerifyOptions>();
  AddRecordings(app, options->recordings);
  app.add_option("--key", options->key, "public key of the recorder, 64 hexadecimal digits");
  app.add_option("--keys", options->keys, "file with public keys of recorders, one a line");
  app.add_option("--noted", options->noted, "a seal that must be there, as \"metadata ask seal\" printed it")
      ->type_name("NUMBER:FINGERPRINT");
  app.add_flag("--json", options->json, "as JSON");
  app.footer(
      "Proves by their seals that recordings are whole and unchanged, or names the first wrong commit.\n"
      "Without a key it tells only whether they are consistent.\n"
      "Exit status: 0 whole and proven, 1 a failure, 2 wrong usage, 3 consistent but not proven (or not up "
      "to\n"
      "the end), 4 cannot tell (not sealed, or by another recorder), 5 incomplete, 6 altered.\n"
      "Examples:\n"
      "  metadata verify                                       are the hashes of this machine's recordings "
      "right?\n"
      "  metadata verify --keys depot.keys /media/card/metadata && echo proven");
  return [options] { return Verify(*options); };
}

}  // namespace reader
