#include "scan/media_classification.h"

#include "toolkit/PKStringAdditions.h"

#include <algorithm>
#include <array>

namespace kestrova {

namespace {

constexpr std::size_t longestPlainExtension = 30;

bool isPlain(std::string_view extension) {
  return extension.size() <= longestPlainExtension &&
         std::all_of(extension.begin(), extension.end(), [](char c) { return (c & 0x80) == 0; });
}

}  // namespace

char lowercase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

ExtensionList::ExtensionList(const QString& text) : text_(text), lowercase_(text.toLower().toStdString()) {}

bool ExtensionList::holds(std::string_view extension) const {
  if (!isPlain(extension)) {
    const QString whole = u',' + QString::fromUtf8(extension).toLower() + u',';
    return PKStringAdditions::containsString(text_.toLower(), whole);
  }
  std::array<char, longestPlainExtension + 2> whole{','};
  const auto end = std::transform(extension.begin(), extension.end(), whole.begin() + 1, lowercase);
  *end = ',';
  return lowercase_.find(whole.data(), 0, extension.size() + 2) != std::string::npos;
}

bool ExtensionList::accepts(std::string_view fileName) const {
  const auto extension = extensionOfName(fileName);
  return !extension.empty() && holds(extension);
}

ExtensionList photoExtensions(PhotoFormats formats) {
  const auto* row = rowOf(formats);
  return row == nullptr ? ExtensionList() : QString::fromUtf16(row->extensions);
}

ExtensionList videoExtensions() { return QStringLiteral("(,avi,mov,divx,mp4,mpg,m4v,flv,mkv,)"); }

ExtensionList mediaFilter(Media media, const ExtensionList& photos, const ExtensionList& videos) {
  switch (media) {
    case Media::photosAndVideos:
      return (photos.text() + u',' + videos.text()).toLower();
    case Media::photos:
      return photos.text().toLower();
    case Media::videos:
      return videos.text().toLower();
    case Media::none:
      break;
  }
  return QStringLiteral("avi,jpg,mov");
}

std::string_view extensionOfName(std::string_view fileName) {
  const auto dot = fileName.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return fileName.substr(dot + 1);
}

std::string_view extensionOfPath(const Path& path) {
  const std::string_view bytes = path.native();
  return extensionOfName(bytes.substr(bytes.rfind('/') + 1));
}

}  // namespace kestrova
