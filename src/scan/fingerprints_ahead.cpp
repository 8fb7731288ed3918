#include "scan/fingerprints_ahead.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kestrova {

namespace {

// Enough to keep the threads busy while one of them reads from a slow disk.
constexpr std::size_t mostSteps = 256;

// As many as are digested side by side at most.
constexpr std::size_t groupSize = 16;

}  // namespace

void FingerprintsAhead::expect(const WalkedFile& file) {
  if (threads_ == 0) return;
  const auto [found, isNew] = sizes_.try_emplace(file.size);
  Size& size = found->second;
  if (isNew) size = known(file.size);
  ++size.expected;
  if (!size.first) {
    size.first = file.path.native();
    return;
  }
  if (!std::exchange(size.isFirstRead, true)) read(*size.first);
  read(file.path);
}

FingerprintsAhead::Size FingerprintsAhead::known(std::uint64_t size) const {
  Size known{.first = fileList_.find({}, size)};
  known.isFirstRead = known.first && hashList_.find(*known.first);
  return known;
}

void FingerprintsAhead::read(const Path& path) {
  paths_.push_back(path.native());
  group_.push_back(path);
  if (group_.size() == groupSize) askForGroup();
}

void FingerprintsAhead::askForGroup() {
  groups_.ask(
      [&files = files_, group = std::exchange(group_, {})] { return readFingerprints(files, group); });
}

void FingerprintsAhead::inTurn(Step step) {
  steps_.push_back(std::move(step));
  while (!steps_.empty() && !mustWait()) doFirstStep();
}

// Most files need not wait, so they are not copied.
void FingerprintsAhead::inTurn(const WalkedFile& file, const Visit& visit) {
  if (steps_.empty() && !mustWait()) {
    visit(file);
  } else {
    inTurn([file, visit] { visit(file); });
  }
}

bool FingerprintsAhead::mustWait() const {
  const bool isMissing = !paths_.empty() && read_.empty() && !groups_.isReady();
  return isMissing && steps_.size() < mostSteps;
}

void FingerprintsAhead::doFirstStep() {
  const Step step = std::move(steps_.front());
  steps_.pop_front();
  if (keepsGoing()) step();
}

void FingerprintsAhead::finish() {
  while (!steps_.empty()) doFirstStep();
}

Sighting FingerprintsAhead::judge(const WalkedFile& file) {
  auto sighting =
      judgeFile(fileList_, hashList_, file, [this](const Path& path) { return fingerprintOf(path); });
  const auto size = sizes_.find(file.size);
  if (size != sizes_.end() && --size->second.expected == 0) sizes_.erase(size);
  return sighting;
}

Fingerprint FingerprintsAhead::fingerprintOf(const Path& path) {
  if (paths_.empty() || paths_.front() != path.native()) return readFingerprint(files_, path);
  paths_.pop_front();
  if (read_.empty()) {
    if (groups_.size() == 0) askForGroup();
    std::ranges::move(groups_.take(), std::back_inserter(read_));
  }
  Fingerprint first = std::move(read_.front());
  read_.pop_front();
  return first;
}

}  // namespace kestrova
