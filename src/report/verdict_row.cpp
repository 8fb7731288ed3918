#include "report/verdict_row.h"

#include "platform/path_relation.h"
#include "report/timestamps.h"

#include <cstdio>
#include <utility>

namespace kestrova::report {

namespace {

std::string textOf(const DateParts& date) {
  char text[64];
  const int length =
      std::snprintf(text, sizeof text, "%04lld-%02d-%02dT%02d:%02d:%02d", static_cast<long long>(date.year),
                    date.month, date.day, date.hour, date.minute, date.second);
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace

FileRow rowOf(Verdict verdict, const Path& targetFolder) {
  FileRow row{.source = std::move(verdict.source),
              .verdict = verdict.outcome,
              .sourceSize = verdict.sourceSize,
              .targetSize = verdict.targetSize,
              .original = std::move(verdict.original),
              .sourceSha256 = std::move(verdict.sourceSha256),
              .targetSha256 = std::move(verdict.targetSha256),
              .reason = std::move(verdict.error),
              .pagesLeftOut = static_cast<int>(verdict.pagesLeftOut),
              .createdFolders = std::move(verdict.createdFolders)};
  if (verdict.target) row.target = relativeTo(targetFolder, *verdict.target);
  if (verdict.sourceModified) row.sourceModified = nanosecondsText(*verdict.sourceModified);
  if (verdict.targetModified) row.targetModified = nanosecondsText(*verdict.targetModified);
  if (verdict.date) {
    row.date = textOf(verdict.date->local);
    row.dateFrom = wordOf(verdict.date->origin);
  }
  return row;
}

}  // namespace kestrova::report
