#include "report/run_folder.h"

#include "platform/append_file.h"
#include "platform/create_folders.h"
#include "platform/file_error.h"
#include "report/timestamps.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t stampLength = 16;  // 20261121T101502Z
constexpr int mostAttempts = 10000;

/// A run's start and its number among those of the same second: sorts ids in the order of their runs.
using Order = std::pair<std::string, int>;

std::optional<Order> orderOf(std::string_view id) {
  if (id.size() < stampLength || id[8] != 'T' || id[stampLength - 1] != 'Z') return std::nullopt;
  Order order(id.substr(0, stampLength), 1);
  const std::string_view rest = id.substr(stampLength);
  if (rest.empty()) return order;
  const auto [end, error] = std::from_chars(rest.data() + 1, rest.data() + rest.size(), order.second);
  if (rest.front() != '-' || error != std::errc() || end != rest.data() + rest.size()) return std::nullopt;
  return order;
}

}  // namespace

std::optional<Path> runsFolder() {
  const char* const state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return Path(state) / "kestrova" / "runs";
  const char* const home = std::getenv("HOME");
  if (home == nullptr || *home != '/') return std::nullopt;
  return Path(home) / ".local" / "state" / "kestrova" / "runs";
}

FileResult<Path> createRunFolder(const Path& runs, std::chrono::sys_seconds start) {
  if (const auto created = createFolders(runs); !created) return tl::make_unexpected(created.error());
  const std::string stamp = utcText(start, "%Y%m%dT%H%M%SZ");
  for (int number = 1; number <= mostAttempts; ++number) {
    const Path folder = runs / (number == 1 ? stamp : stamp + '-' + std::to_string(number));
    if (::mkdir(folder.c_str(), 0700) == 0) return folder;
    if (errno != EEXIST) return failure();
  }
  return failure(EEXIST);
}

std::vector<std::string> runIds(const Path& runs) {
  std::vector<std::pair<Order, std::string>> found;
  std::error_code error;
  for (fs::directory_iterator entry(runs, error), end; !error && entry != end; entry.increment(error)) {
    std::string id = entry->path().filename().native();
    if (auto order = orderOf(id)) found.emplace_back(std::move(*order), std::move(id));
  }
  std::sort(found.rbegin(), found.rend());
  std::vector<std::string> ids;
  for (auto& [order, id] : found) ids.push_back(std::move(id));
  return ids;
}

void removeOldRuns(const Path& runs, std::size_t kept) {
  const std::vector<std::string> ids = runIds(runs);
  for (std::size_t i = kept; i < ids.size(); ++i) {
    const Path run = runs / ids[i];
    std::error_code error;  // what cannot be removed stays
    if (!isBeingWritten(rowsFile(run))) fs::remove_all(run, error);
  }
}

Path infoFile(const Path& run) { return run / "run.json"; }
Path rowsFile(const Path& run) { return run / "report.ndjson"; }

}  // namespace kestrova::report
