#include "execution/operation_record.h"

#include "execution/operation_queue.h"

namespace kestrova {

OperationRecord::OperationRecord(std::initializer_list<Entry> entries, std::optional<PlannedSource> planned,
                                 std::optional<std::size_t> index)
    : planned_(std::move(planned)), index_(index) {
  for (const Entry& entry : entries) {
    if (!entry.value) return;
    entries_.emplace_back(entry.key, *entry.value);
  }
}

template <typename Type>
const Type* OperationRecord::find(std::string_view key) const {
  for (const auto& [name, value] : entries_) {
    if (name == key) return std::get_if<Type>(&value);
  }
  return nullptr;
}

std::optional<Path> OperationRecord::file(std::string_view key) const {
  const auto* url = find<FileUrl>(key);
  return url == nullptr ? std::nullopt : std::optional<Path>(url->bytes);
}

std::optional<std::int64_t> OperationRecord::number(std::string_view key) const {
  const auto* number = find<std::int64_t>(key);
  return number == nullptr ? std::nullopt : std::optional(*number);
}

std::shared_ptr<InvocationOperation> OperationRecord::operation() const {
  const auto* operation = find<std::weak_ptr<InvocationOperation>>("operation");
  return operation == nullptr ? nullptr : operation->lock();
}

const Bytes* OperationRecord::data() const { return find<Bytes>("data"); }

OperationRecord recordOf(const PlanEntry& entry, const std::weak_ptr<InvocationOperation>& operation,
                         std::optional<std::size_t> index) {
  using Value = OperationRecord::Value;
  std::optional<Value> to;
  if (entry.to) to = OperationRecord::FileUrl(*entry.to);
  std::optional<Value> orientation;
  if (entry.orientation) orientation = *entry.orientation;
  const Value from = OperationRecord::FileUrl(entry.from);
  if (entry.handler == PlanEntry::Handler::copy) {
    return OperationRecord({{"from", from}, {"to", to}, {"operation", operation}}, entry.planned, index);
  }
  return OperationRecord({{"from", from},
                          {"to", to},
                          {"orientation", orientation},
                          {"resolution", indexOf(entry.resolution)},
                          {"operation", operation}},
                         entry.planned, index);
}

Resolution recordedResolution(const PlanEntry& entry) {
  return entry.orientation ? entry.resolution : Resolution::original;
}

Verdict plannedVerdict(const OperationRecord& record) {
  const PlannedSource planned = record.planned().value_or(PlannedSource());
  return {.source = record.file("from").value_or(Path()),
          .target = record.file("to"),
          .sourceSize = planned.size,
          .sourceModified = planned.modified,
          .date = planned.date};
}

}  // namespace kestrova
