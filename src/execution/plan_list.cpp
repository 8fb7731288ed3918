#include "execution/plan_list.h"

#include <functional>

namespace kestrova {

namespace {

using Writer = PackedRecords::Writer;
using Reader = PackedRecords::Reader;

/// What a record begins with: one bit for each part that may be absent.
enum Part : std::uint64_t {
  isResize = 1,
  hasTo = 2,
  isBelowTargetFolder = 4,
  hasOrientation = 8,
  hasModified = 16,
  hasDate = 32,
  isNameTaken = 64,
  hasReadError = 128,
};

enum PathKind : std::size_t { sources, targets };

std::uint64_t partsOf(const PlanEntry& entry, const std::string& targetFolder) {
  const auto bit = [](bool isThere, Part part) -> std::uint64_t { return isThere ? std::uint64_t{part} : 0; };
  const bool isBelow = entry.to && entry.to->native().starts_with(targetFolder);
  return bit(entry.handler == PlanEntry::Handler::resize, isResize) | bit(entry.to.has_value(), hasTo) |
         bit(isBelow, isBelowTargetFolder) | bit(entry.orientation.has_value(), hasOrientation) |
         bit(entry.planned.modified.has_value(), hasModified) | bit(entry.planned.date.has_value(), hasDate) |
         bit(entry.planned.isNameTaken, isNameTaken) | bit(!entry.planned.readError.empty(), hasReadError);
}

void write(Writer& record, const NamingDate& date) {
  record.signedNumber(date.local.year);
  for (const int part : {date.local.month, date.local.day, date.local.hour, date.local.minute,
                         date.local.second, date.local.weekday, static_cast<int>(date.origin)}) {
    record.signedNumber(part);
  }
}

NamingDate readDate(Reader& record) {
  NamingDate date;
  date.local.year = record.signedNumber();
  for (int* const part : {&date.local.month, &date.local.day, &date.local.hour, &date.local.minute,
                          &date.local.second, &date.local.weekday}) {
    *part = static_cast<int>(record.signedNumber());
  }
  date.origin = static_cast<DateOrigin>(record.signedNumber());
  return date;
}

std::size_t hashOf(const Path& path) { return std::hash<std::string>()(path.native()); }

Date readModified(Reader& record) {
  const std::int64_t seconds = record.signedNumber();
  return {.seconds = seconds, .nanoseconds = static_cast<std::int32_t>(record.signedNumber())};
}

}  // namespace

void PlanList::append(const PlanEntry& entry) {
  const PlannedSource& planned = entry.planned;
  const std::uint64_t parts = partsOf(entry, target_);
  if (entry.to && !planned.isNameTaken) targets_.add(hashOf(*entry.to), size());
  Writer record = records_.append();
  record.number(parts);
  record.path(sources, entry.from.native());
  if (entry.to) {
    const std::string_view to = entry.to->native();
    record.path(targets, (parts & isBelowTargetFolder) != 0 ? to.substr(target_.size()) : to);
  }
  record.signedNumber(indexOf(entry.resolution));
  if (entry.orientation) record.signedNumber(*entry.orientation);
  record.number(planned.size);
  if (planned.modified) {
    record.signedNumber(planned.modified->seconds);
    record.signedNumber(planned.modified->nanoseconds);
  }
  if (planned.date) write(record, *planned.date);
  if (!planned.readError.empty()) record.text(planned.readError);
}

bool PlanList::hasTarget(const Path& target) const {
  return targets_
      .find(hashOf(target), [&](std::size_t index) { return entry(index).to->native() == target.native(); })
      .has_value();
}

PlanEntry PlanList::entry(std::size_t index) const {
  Reader record = records_.read(index);
  const std::uint64_t parts = record.number();
  const auto has = [parts](Part part) { return (parts & part) != 0; };
  PlanEntry entry;
  entry.handler = has(isResize) ? PlanEntry::Handler::resize : PlanEntry::Handler::copy;
  entry.from = record.path();
  if (has(hasTo)) {
    const std::string to = record.path();
    entry.to = has(isBelowTargetFolder) ? target_ + to : to;
  }
  entry.resolution = optionAt<Resolution>(record.signedNumber());
  if (has(hasOrientation)) entry.orientation = record.signedNumber();
  PlannedSource& planned = entry.planned;
  planned.size = record.number();
  if (has(hasModified)) planned.modified = readModified(record);
  if (has(hasDate)) planned.date = readDate(record);
  planned.isNameTaken = has(isNameTaken);
  if (has(hasReadError)) planned.readError = record.text();
  return entry;
}

}  // namespace kestrova
