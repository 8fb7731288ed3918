#include "support/process.h"
#include "support/real_photos.h"
#include "support/temporary_folder.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

// Runs the real program over real photos.

namespace kestrova::test {

namespace {

using Lines = std::vector<std::string>;

/// What a command says about all files below a folder: one line for each warning, sorted, without the files'
/// names.
Lines sortedLines(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

Lines exiftoolWarnings(const Path& folder) {
  const auto result = runProcess(
      {"exiftool", "-q", "-r", "-a", "-p", "${warning;s/[-\\d]+/N/g}", "-if", "$warning", folder.native()});
  return sortedLines(result.out);
}

Lines imageMagickErrors(const Path& folder) {
  Lines refused;
  for (const auto& file : filesBelow(folder)) {
    const Path path = folder / file;
    if (runProcess({"identify", "-regard-warnings", path.native()}).status != 0) refused.push_back("refused");
  }
  return refused;
}

std::int64_t files(const QJsonObject& summary, const char* group, const char* kind = nullptr) {
  QJsonObject counts = summary[QLatin1String(group)].toObject();
  if (kind != nullptr) counts = counts[QLatin1String(kind)].toObject();
  return counts[QLatin1String("files")].toInteger();
}

/// The lines of `some` that `all` lacks.
Lines added(const Lines& some, const Lines& all) {
  Lines rest;
  std::set_difference(some.begin(), some.end(), all.begin(), all.end(), std::back_inserter(rest));
  return rest;
}

class CliOverRealPhotos : public RealPhotosTest,
                          public testing::WithParamInterface<std::vector<std::string>> {
 protected:
  QJsonObject organise(const Path& source, const Path& target) const {
    std::vector<std::string> command{KESTROVA_CLI,    "organise", source.native(), "--to",
                                     target.native(), "--media",  "photos",        "--photo-formats",
                                     "jpeg+tiff+png", "--json"};
    command.insert(command.end(), GetParam().begin(), GetParam().end());
    const auto result = runProcess(command);
    EXPECT_EQ(result.status, 0) << result.err;
    return QJsonDocument::fromJson(QByteArray::fromStdString(result.out)).object();
  }
  TemporaryFolder folder_;
};

}  // namespace

TEST_P(CliOverRealPhotos, GivesEveryPhotoATargetThatOpensAsItsSourceDid) {
  const Path target = folder_ / "out";
  const auto summary = organise(corpus(), target);
  EXPECT_GT(files(summary, "found", "total"), 0);
  EXPECT_EQ(files(summary, "written", "total") + files(summary, "exists"), files(summary, "found", "total"));
  EXPECT_EQ(files(summary, "failed"), 0);
  EXPECT_EQ(added(exiftoolWarnings(target), exiftoolWarnings(corpus())), Lines());
  EXPECT_LE(imageMagickErrors(target).size(), imageMagickErrors(corpus()).size());
}

TEST_P(CliOverRealPhotos, WritesWhatItCanOrganiseAgain) {
  const auto first = organise(corpus(), folder_ / "out");
  const auto second = organise(folder_ / "out", folder_ / "again");
  EXPECT_EQ(files(second, "failed"), 0);
  EXPECT_EQ(files(second, "written", "total") + files(second, "exists") + files(second, "duplicates") +
                files(second, "passedOver"),
            files(first, "written", "total"));
}

INSTANTIATE_TEST_SUITE_P(Sizes, CliOverRealPhotos,
                         testing::Values(std::vector<std::string>{"--size", "720p"},
                                         std::vector<std::string>{"--size", "1080p"},
                                         std::vector<std::string>{"--upright"},
                                         std::vector<std::string>{"--size", "720p", "--no-upright"}));

}  // namespace kestrova::test
