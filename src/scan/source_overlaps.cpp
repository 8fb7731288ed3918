#include "scan/source_overlaps.h"

#include "platform/path_relation.h"

#include <optional>

namespace kestrova {

namespace {

using Kind = Overlap::Kind;

std::optional<Kind> relationToSource(const Path& source, const Path& other, bool isListedBefore) {
  if (source == other) return isListedBefore ? std::optional(Kind::sourceTwice) : std::nullopt;
  return isInside(source, other) ? std::optional(Kind::sourceInsideSource) : std::nullopt;
}

struct Related {
  Kind kind;
  std::size_t index;  ///< of the other source
};

/// The first source that one of them equals or lies in.
std::optional<Related> findRelated(const std::vector<Path>& sources, std::size_t index) {
  for (std::size_t k = 0; k < sources.size(); ++k) {
    if (k == index) continue;
    if (const auto kind = relationToSource(sources[index], sources[k], k < index)) return Related{*kind, k};
  }
  return std::nullopt;
}

std::optional<Kind> relationToTarget(const Path& source, const Path& target) {
  if (source == target) return Kind::targetIsSource;
  if (isInside(source, target)) return Kind::sourceInsideTarget;
  return isInside(target, source) ? std::optional(Kind::targetInsideSource) : std::nullopt;
}

}  // namespace

std::vector<Overlap> overlapsOf(const std::vector<Path>& sources, const Path& target) {
  std::vector<Path> resolved;
  for (const Path& source : sources) resolved.push_back(resolvedPath(source));
  const Path resolvedTarget = resolvedPath(target);

  std::vector<Overlap> overlaps;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const auto twin = findRelated(resolved, i);
    if (twin) overlaps.push_back({.kind = twin->kind, .source = sources[i], .other = sources[twin->index]});
    if (twin && twin->kind == Kind::sourceTwice) continue;  // all else was said of the other
    if (const auto kind = relationToTarget(resolved[i], resolvedTarget))
      overlaps.push_back({.kind = *kind, .source = sources[i], .other = target});
  }
  return overlaps;
}

}  // namespace kestrova
