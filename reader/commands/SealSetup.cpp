#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "Declarations.h"
#include "seal/KeyPlace.h"
#include "seal/KeyTree.h"
#include "seal/SealText.h"

namespace reader {
namespace {

int Fail(const std::string& path, const std::string& why) {
  (void)std::fprintf(stderr, "metadata: %s: %s\n", path.c_str(), why.c_str());
  return kFinding;
}

// The recorder must own its key: root gives the file to the owner of its directory.
bool GiveToOwner(const std::string& path) {
  struct stat directory {};
  const std::string parent = path.substr(0, path.rfind('/') + 1);
  if (stat(parent.empty() ? "." : parent.c_str(), &directory) != 0) return false;
  return geteuid() != 0 || lchown(path.c_str(), directory.st_uid, directory.st_gid) == 0;
}

int Setup(const std::string& path) {
  seal::Seed seed;
  if (getrandom(seed.data(), seed.size(), 0) != static_cast<ssize_t>(seed.size()))
    return Fail(path, std::strerror(errno));
  const seal::KeyTree tree(seed);
  explicit_bzero(seed.data(), seed.size());
  seal::KeyFile file;
  const seal::KeyFile::Outcome outcome = file.Create(path, seal::Hardware(), tree);
  if (outcome == seal::KeyFile::Outcome::kFailed)
    return Fail(path, errno == EEXIST ? "this recorder has a key already" : std::strerror(errno));
  if (outcome != seal::KeyFile::Outcome::kOk) return Fail(path, seal::TextOf(outcome));
  if (!GiveToOwner(path)) return Fail(path, std::strerror(errno));
  (void)std::printf("%s fingerprint %s\n", seal::KeyText(tree.Root()).c_str(),
                    seal::Fingerprint(tree.Root()).c_str());
  return kGood;
}

}  // namespace

Action DeclareSealSetup(CLI::App& app) {
  auto path = std::make_shared<std::string>(seal::KeyFilePath());
  app.add_option("KEYFILE", *path, "key file to be made")->capture_default_str();
  app.footer(
      "Makes the key with which this recorder seals from its next start on, and prints the public key. Once\n"
      "only: the key file is never replaced. Keep the public key elsewhere: \"metadata verify\" needs it.\n"
      "Examples:\n"
      "  metadata seal-setup >> depot.keys");
  return [path] { return Setup(*path); };
}

}  // namespace reader
