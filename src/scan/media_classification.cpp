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

char lowercase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

QString fromBytes(std::string_view bytes) {
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

}  // namespace

QString photoExtensions(PhotoFormats formats) {
  const auto* row = rowOf(formats);
  return row == nullptr ? QString() : QString::fromUtf16(row->extensions);
}

QString videoExtensions() { return QStringLiteral("(,avi,mov,divx,mp4,mpg,m4v,flv,mkv,)"); }

bool listHoldsExtension(const QString& list, const QString& extension) {
  return PKStringAdditions::containsString(list.toLower(), u',' + extension.toLower() + u',');
}

QString mediaFilter(Media media, const QString& extensionImages, const QString& extensionVideo) {
  switch (media) {
    case Media::photosAndVideos:
      return (extensionImages + u',' + extensionVideo).toLower();
    case Media::photos:
      return extensionImages.toLower();
    case Media::videos:
      return extensionVideo.toLower();
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

QString pathExtension(const Path& path) { return fromBytes(extensionOfName(path.filename().native())); }

ExtensionFilter::ExtensionFilter(const QString& list) : list_(list), bytes_(list.toLower().toStdString()) {}

bool ExtensionFilter::accepts(std::string_view fileName) const {
  const auto extension = extensionOfName(fileName);
  if (extension.empty()) return false;
  if (!isPlain(extension)) return listHoldsExtension(list_, fromBytes(extension));
  std::array<char, longestPlainExtension + 2> text{','};
  const auto end = std::transform(extension.begin(), extension.end(), text.begin() + 1, lowercase);
  *end = ',';
  return bytes_.find(text.data(), 0, extension.size() + 2) != std::string::npos;
}

}  // namespace kestrova
