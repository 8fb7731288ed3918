#include "planning/examined_ahead.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace kestrova {

namespace {

// Large enough that handing a group over costs little.
constexpr std::size_t groupSize = 32;
constexpr std::size_t mostGroups = 8;

// A file that raises an exception gets no options, so it is examined again when its turn comes.
std::vector<ExaminedFile> examineAll(const std::vector<std::string>& paths, const ReadingOptions& options,
                                     const FileManager& files) {
  std::vector<ExaminedFile> examined;
  for (const std::string& path : paths) {
    try {
      examined.push_back(examineFile(path, options, files));
    } catch (const std::exception&) {
      examined.emplace_back();
    }
  }
  return examined;
}

}  // namespace

ExaminedFile ExaminedAhead::next(const ReadingOptions& options) {
  const std::size_t index = next_++;
  if (threads_ > 0) {
    askForMore(options);
    if (examined_.empty()) std::ranges::move(groups_.take(), std::back_inserter(examined_));
    ExaminedFile first = std::move(examined_.front());
    examined_.pop_front();
    if (first.options == options) return first;
  }
  return examineFile(fileList_[index].path, options, files_);
}

void ExaminedAhead::askForMore(const ReadingOptions& options) {
  while (asked_ < fileList_.size() && groups_.size() < mostGroups) {
    std::vector<std::string> paths;
    for (; asked_ < fileList_.size() && paths.size() < groupSize; ++asked_) {
      paths.push_back(fileList_[asked_].path);
    }
    groups_.ask(
        [&files = files_, paths = std::move(paths), options] { return examineAll(paths, options, files); });
  }
}

}  // namespace kestrova
