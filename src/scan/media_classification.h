#pragma once

#include "model/options.h"
#include "platform/file_manager.h"

#include <QString>
#include <string>
#include <string_view>

namespace kestrova {

/// An extension list is a text of lowercase extensions between commas, with a comma at each end, in round
/// brackets:
/// "(,jpg,jpeg,)". The commas make each extension match whole; the brackets mean nothing.

/// The photo list of a choice of photo formats; empty where none is chosen.
QString photoExtensions(PhotoFormats formats);
QString videoExtensions();

/// Whether the list holds the extension (given without its dot, in any case).
bool listHoldsExtension(const QString& list, const QString& extension);

/// The list of what a scan takes. Where nothing is chosen it is "avi,jpg,mov", in which only jpg has a comma
/// on each side.
QString mediaFilter(Media media, const QString& extensionImages, const QString& extensionVideo);

/// What follows the last dot of a file's name; empty without a dot, or when that dot is the name's first or
/// last byte.
std::string_view extensionOfName(std::string_view fileName);
/// The same of a path's last component, as text.
QString pathExtension(const Path& path);

/// The same test as `listHoldsExtension` for very many file names: no allocation for plain ASCII.
class ExtensionFilter {
 public:
  explicit ExtensionFilter(const QString& list);
  /// Whether a file of this name passes; one without an extension does not.
  bool accepts(std::string_view fileName) const;

 private:
  QString list_;
  std::string bytes_;
};

}  // namespace kestrova
