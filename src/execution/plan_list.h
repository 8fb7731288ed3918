#pragma once

#include "planning/plan_entry.h"
#include "platform/hash_index.h"
#include "platform/packed_records.h"

#include <cstddef>

namespace kestrova {

/// The plan of a run: its entries in order, packed. A target below the run's target folder is stored without
/// that.
///
/// Entries are appended by one thread, which also calls `finish`, before any other reads them. Then any
/// number of threads may read; one thread may release entries that no other reads.
class PlanList {
 public:
  explicit PlanList(const Path& target) : target_(target.native()) {}

  void append(const PlanEntry& entry);
  /// Whether an entry has this target.
  bool hasTarget(const Path& target) const;
  /// No more entries come: what is only needed to append them is freed.
  void finish() { targets_.clear(); }

  /// Entries released included.
  std::size_t size() const { return records_.size(); }
  /// As it was appended. It must not have been released.
  PlanEntry entry(std::size_t index) const;
  /// Entries before this one are not read any more.
  void releaseBefore(std::size_t index) { records_.releaseBefore(index); }

 private:
  const std::string target_;
  PackedRecords records_;
  HashIndex targets_;  ///< the first entry of each target
};

}  // namespace kestrova
