#pragma once

#include "model/options.h"
#include "platform/file_manager.h"

#include <QString>
#include <string>
#include <string_view>

namespace kestrova {

/// A list of file name extensions: a text of lowercase extensions between commas, with a comma at each end,
/// in round brackets: "(,jpg,jpeg,)". The commas make each extension match whole; the brackets mean nothing.
class ExtensionList {
 public:
  ExtensionList() = default;
  ExtensionList(const QString& text);  // NOLINT(google-explicit-constructor): a list is its text

  const QString& text() const { return text_; }
  bool isEmpty() const { return text_.isEmpty(); }
  bool operator==(const ExtensionList& other) const { return text_ == other.text_; }

  /// Whether the list holds the extension, given in UTF-8 without its dot, in any case. Allocates memory only
  /// for extensions that are long or not ASCII.
  bool holds(std::string_view extension) const;
  /// Whether a file of this name passes; a name without an extension does not.
  bool accepts(std::string_view fileName) const;

 private:
  QString text_;
  std::string lowercase_;  ///< UTF-8
};

/// The extensions of a choice of photo formats; empty if none is chosen.
ExtensionList photoExtensions(PhotoFormats formats);
ExtensionList videoExtensions();

/// The extensions that a scan takes. If nothing is chosen they are "avi,jpg,mov", in which only jpg has a
/// comma on each side.
ExtensionList mediaFilter(Media media, const ExtensionList& photos, const ExtensionList& videos);

/// In lower case, where it is an ASCII letter.
char lowercase(char c);

/// What follows the last dot of a file's name; empty without a dot, or when that dot is the name's first or
/// last byte. A part of the name given.
std::string_view extensionOfName(std::string_view fileName);
/// The same of a path's last component. A part of the path given.
std::string_view extensionOfPath(const Path& path);
std::string_view extensionOfPath(Path&& path) = delete;  // the extension would outlive the path

}  // namespace kestrova
