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

void take(ExaminedFile& file, const FileResult<FileAttributes>& attributes) {
  if (attributes) {
    file.facts.size = attributes->size;
    file.modified = attributes->modified;
  } else {
    file.readError = attributes.error().message;
  }
}

void take(ExaminedFile& file, const FileResult<Bytes>& start) {
  if (start) {
    file.metadata = imageMetadata(*start);
  } else {
    file.readError = start.error().message;
  }
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

ReadingOptions readingOptions(const PlanningContext& context) {
  return {.photos = &context.photos,
          .videos = &context.videos,
          .filterSmallPhotos = context.options.filterSmallPhotos,
          .filterSmallVideos = context.options.filterSmallVideos};
}

ExaminedFile examineFile(const Path& file, const ReadingOptions& options, const FileManager& files) {
  const PlanningOptions filters{.filterSmallPhotos = options.filterSmallPhotos,
                                .filterSmallVideos = options.filterSmallVideos};
  const auto extension = extensionOfPath(file);
  ExaminedFile examined{
      .options = options,
      .facts = {.isPhoto = options.photos->holds(extension), .isVideo = options.videos->holds(extension)}};
  const bool mayBeLeftOut = isSmallFile(examined.facts, filters);  // its size is still 0
  if (examined.facts.isPhoto && !mayBeLeftOut) {
    const FileStart start = files.readStart(file, prefixLength);
    take(examined, start.attributes);
    take(examined, start.bytes);
    return examined;
  }
  take(examined, files.attributesOfItem(file));
  if (examined.facts.isPhoto && !isSmallFile(examined.facts, filters)) {
    take(examined, files.readPrefix(file, prefixLength));
  }
  return examined;
}

tl::expected<PlanEntry, Verdict> planFile(const Path& file, const ExaminedFile& examined,
                                          const PlanningContext& context, const FileManager& files) {
  Source source{
      .path = file,
      .extension = extensionOfPath(file),
      .facts = examined.facts,
      .planned = {
          .size = examined.facts.size, .modified = examined.modified, .readError = examined.readError}};
  const ImageMetadata& metadata = examined.metadata;
  if (isSmallFile(source.facts, context.options)) return tl::unexpected(verdictOn(source, Outcome::small));
  if (isLogging()) log(QStringLiteral("IMAGE  ") + displayPath(file));

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
