#pragma once

#include "model/verdict.h"
#include "planning/plan_entry.h"
#include "platform/file_manager.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kestrova {

class InvocationOperation;

/// The argument of an operation's handler: an immutable dictionary, owned by the operation that carries it.
///
/// Keys: "from" and "to" (files), "orientation" (1 to 8), "resolution" (0 keeps the size, 1 is 720P, 2 is
/// 1080P, -1 none chosen), "operation" (the operation that carries the record, not kept alive by it), "data"
/// (a file's contents).
class OperationRecord {
 public:
  struct FileUrl {
    FileUrl(const Path& path)
        : bytes(path.native()) {}  // NOLINT(google-explicit-constructor): reads as a path
    std::string bytes;
  };
  using Value = std::variant<FileUrl, std::int64_t, std::weak_ptr<InvocationOperation>, Bytes>;
  struct Entry {
    std::string_view key;  // a literal
    std::optional<Value> value;
  };

  /// Takes the entries in their order; the list ends at the first absent value. What the plan knows about the
  /// source, and its index in the plan, are not entries, so they are there even if the list ends early.
  OperationRecord(std::initializer_list<Entry> entries, std::optional<PlannedSource> planned = {},
                  std::optional<std::size_t> index = {});

  std::size_t count() const { return entries_.size(); }
  std::optional<Path> file(std::string_view key) const;
  std::optional<std::int64_t> number(std::string_view key) const;
  /// Null when there is none or it is gone.
  std::shared_ptr<InvocationOperation> operation() const;
  /// Null when there is none.
  const Bytes* data() const;
  /// Absent if nothing was planned.
  const std::optional<PlannedSource>& planned() const { return planned_; }
  /// Which entry of the plan list this is; absent if nothing was planned.
  std::optional<std::size_t> index() const { return index_; }

 private:
  template <typename Type>
  const Type* find(std::string_view key) const;

  std::vector<std::pair<std::string_view, Value>> entries_;
  std::optional<PlannedSource> planned_;
  std::optional<std::size_t> index_;
};

/// The record of a planned operation. A photo without an orientation gets a resize record of "from" and "to"
/// alone, as the list ends there.
OperationRecord recordOf(const PlanEntry& entry, const std::weak_ptr<InvocationOperation>& operation,
                         std::optional<std::size_t> index = {});

/// The resolution that such a record has: the original one if it ends before that.
Resolution recordedResolution(const PlanEntry& entry);

/// The verdict on a record's file, with all that was planned of it but no outcome.
Verdict plannedVerdict(const OperationRecord& record);

}  // namespace kestrova
