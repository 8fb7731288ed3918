#pragma once

#include "platform/ahead.h"
#include "scan/duplicate_index.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace kestrova {

/// Judges the files of a scan in order, while threads read the fingerprints that will be needed for the next
/// ones. The result is that of judging each file at once.
class FingerprintsAhead {
 public:
  using Step = std::function<void()>;
  using Visit = std::function<void(const WalkedFile& file)>;

  /// With no threads, a fingerprint is read when its file is judged, and a step is done at once. The lists
  /// are changed by `judge` only.
  FingerprintsAhead(const FileManager& files, FileList& fileList, HashList& hashList, std::size_t threads)
      : files_(files), fileList_(fileList), hashList_(hashList), threads_(threads), groups_(threads) {}

  /// Steps that come after it returned false are dropped.
  std::function<bool()> keepsGoing = [] { return true; };

  /// The file will be judged, after all that were expected before.
  void expect(const WalkedFile& file);
  /// Does a step, soon and after all earlier ones: judging an expected file, or what must not overtake that.
  void inTurn(Step step);
  /// The same for a step that visits a file.
  void inTurn(const WalkedFile& file, const Visit& visit);
  /// Does the steps that are left.
  void finish();

  /// To be called in a step.
  Sighting judge(const WalkedFile& file);

 private:
  /// The files of one size that are expected.
  struct Size {
    std::optional<std::string> first;  ///< of all files of this size
    bool isFirstRead = false;          ///< or about to be
    std::size_t expected = 0;
  };

  Size known(std::uint64_t size) const;
  void read(const Path& path);
  void askForGroup();
  Fingerprint fingerprintOf(const Path& path);
  bool mustWait() const;
  void doFirstStep();

  const FileManager& files_;
  FileList& fileList_;
  HashList& hashList_;
  const std::size_t threads_;
  std::unordered_map<std::uint64_t, Size> sizes_;
  std::deque<Step> steps_;
  std::deque<std::string> paths_;  ///< whose fingerprints are read ahead
  std::vector<Path> group_;        ///< the last of them, for which no thread has been asked yet
  std::deque<Fingerprint> read_;   ///< of the first of them
  Ahead<std::vector<Fingerprint>> groups_;
};

}  // namespace kestrova
