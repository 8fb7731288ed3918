#include "planning/plan_file.h"

#include "planning/calendar.h"
#include "platform/log.h"
#include "scan/content_fingerprint.h"

#include <string_view>
#include <utility>

namespace kestrova {

namespace {

/// What is known about the file.
struct Source {
  const Path& path;
  std::string_view extension;
  FileFacts facts;
  PlannedSource planned;
};

Source examine(const Path& path, const PlanningContext& context, const FileManager& files) {
  const auto extension = extensionOfPath(path);
  Source source{
      .path = path,
      .extension = extension,
      .facts = {.isPhoto = context.photos.holds(extension), .isVideo = context.videos.holds(extension)},
      .planned = {}};
  if (const auto attributes = files.attributesOfItem(path)) {
    source.facts.size = attributes->size;
    source.planned.modified = attributes->modified;
  } else {
    source.planned.readError = attributes.error().message;
  }
  source.planned.size = source.facts.size;
  return source;
}

ImageMetadata readMetadata(Source& source, const FileManager& files) {
  const auto start = files.readPrefix(source.path, prefixLength);
  if (!start) {
    source.planned.readError = start.error().message;
    return {};
  }
  return imageMetadata(*start);
}

void logSize(const ImageMetadata& metadata) {
  if (!isLogging() || !metadata.pixelWidth || !metadata.pixelHeight) return;
  log(QStringLiteral("Pixel Width : %1  Pixel Height : %2")
          .arg(*metadata.pixelWidth)
          .arg(*metadata.pixelHeight));
}

NamingDate namingDate(const Source& source, const ImageMetadata& metadata, Date runStart) {
  if (metadata.captureDate) return {splitDate(*metadata.captureDate), DateOrigin::digitised};
  if (source.planned.modified) return {splitDate(*source.planned.modified), DateOrigin::modified};
  return {splitDate(runStart), DateOrigin::runStart};
}

std::optional<Path> targetOf(const Source& source, const PlanningContext& context) {
  if (!context.target) return std::nullopt;
  const DateParts& date = source.planned.date->local;
  const auto folder = datedFolder(context.options.folderFormat, date, context.months, context.days);
  if (!folder) return std::nullopt;
  const auto name = targetFileName(mediaKindOf(source.facts), date, source.facts.size, source.extension);
  return *context.target / (*folder + '/' + name);
}

Verdict verdictOn(const Source& source, Outcome outcome) {
  Verdict verdict{.outcome = outcome,
                  .source = source.path,
                  .sourceSize = source.planned.size,
                  .sourceModified = source.planned.modified,
                  .date = source.planned.date};
  if (!source.planned.readError.empty()) verdict.becomeUnreadable(source.planned.readError);
  return verdict;
}

/// The same for a file whose target exists, or may exist.
Verdict verdictOn(const Source& source, const Path& target, const FileResult<bool>& exists) {
  Verdict verdict = verdictOn(source, exists ? Outcome::exists : Outcome::failed);
  verdict.target = target;
  if (!exists) {
    verdict.error = exists.error().message;
    verdict.errorCode = exists.error().code;
  }
  return verdict;
}

}  // namespace

tl::expected<PlanEntry, Verdict> planFile(const Path& file, const PlanningContext& context,
                                          const FileManager& files) {
  Source source = examine(file, context, files);
  if (isSmallFile(source.facts, context.options)) return tl::unexpected(verdictOn(source, Outcome::small));
  if (isLogging()) log(QStringLiteral("IMAGE  ") + displayPath(file));

  const auto metadata = source.facts.isPhoto ? readMetadata(source, files) : ImageMetadata();
  logSize(metadata);
  if (isSmallPicture(metadata, context.options)) return tl::unexpected(verdictOn(source, Outcome::small));

  source.planned.date = namingDate(source, metadata, context.runStart);
  auto target = targetOf(source, context);
  const FileResult<bool> exists = target ? files.fileExists(*target) : false;
  if (!exists || *exists) return tl::unexpected(verdictOn(source, *target, exists));
  return PlanEntry{.handler = chooseHandler(source.facts, metadata, context.options),
                   .from = file,
                   .to = std::move(target),
                   .orientation = metadata.orientation,
                   .resolution = context.options.resolution,
                   .planned = std::move(source.planned)};
}

}  // namespace kestrova
