#include "imaging/photo_rewrite.h"

#include "imaging/base/image_error.h"
#include "imaging/jpeg/jpeg_rewrite.h"

#include <exception>

namespace kestrova::imaging {

namespace {

/// How a photo's metadata change. Previews are JPEGs in every format.
MetadataEdit metadataEdit(const RewritePlan& plan) {
  return {.exif = {.pixelSize = plan.result(),
                   .resetOrientation = plan.resetOrientation,
                   .exchangesAxes = plan.reorientation.transpose},
          .turnPreview = previewTurner(plan),
          .stopped = plan.stopped};
}

MeasuredPhoto measure(ByteView file) {
  const PhotoFormat* format = formatOf(file);
  if (format == nullptr) throw ImageError("not a JPEG, PNG or TIFF file");
  const ImageSize size = format->measure(file);
  requireAffordable(size.stored.width, size.stored.height);
  return {format, size};
}

RewrittenPhoto rewrite(ByteView file, const MeasuredPhoto& photo, const RewritePlan& plan) {
  requireAffordable(plan.source.width, plan.source.height);
  requireAffordable(plan.scaled.width, plan.scaled.height);
  return photo.format->rewrite(file, plan, metadataEdit(plan));
}

/// Runs a function that may throw, and returns its error as a value.
template <class Work>
auto asValue(const Work& work) -> tl::expected<decltype(work()), RewriteError> {
  try {
    return work();
  } catch (const Interrupted& interruption) {
    return tl::unexpected(RewriteError{.reason = interruption.what(), .isInterrupted = true});
  } catch (const std::exception& error) {
    return tl::unexpected(RewriteError{error.what()});
  } catch (...) {
    return tl::unexpected(RewriteError{"unknown"});
  }
}

}  // namespace

tl::expected<MeasuredPhoto, RewriteError> measurePhoto(ByteView file) {
  return asValue([&] { return measure(file); });
}

tl::expected<RewrittenPhoto, RewriteError> rewritePhoto(ByteView file, const MeasuredPhoto& photo,
                                                        const RewriteRequest& request,
                                                        const Stopped& stopped) {
  RewritePlan plan = planRewrite(photo.size, request);
  plan.stopped = stopped;
  return asValue([&] { return rewrite(file, photo, plan); });
}

}  // namespace kestrova::imaging
