#include "support/temporary_folder.h"

#include <QLibraryInfo>
#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Reads the includes of the sources: dependencies must point one way.
namespace kestrova {
namespace {

using namespace kestrova::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The rooms from bottom to top. A file includes from its own room and from the levels below; rooms of one
/// level must not include each other.
const std::vector<std::vector<std::string_view>> levels = {
    {"platform"},
    {"model"},
    {"imaging/base"},
    {"imaging/scale", "imaging/exif"},
    {"imaging/jpeg", "imaging/png", "imaging/tiff"},
    {"imaging"},
    {"toolkit"},
    {"scan"},
    {"planning"},
    {"execution"},
    {"report"},
    {"app"},
    {"window", "cli"},
};

struct Room {
  std::string_view name;  ///< empty: in no room that is listed above
  std::size_t level = 0;
};

bool isInside(std::string_view file, std::string_view room) {
  return file.starts_with(room) && file.substr(room.size()).starts_with('/');
}

/// The innermost room that holds the file.
Room roomOf(std::string_view file) {
  Room found;
  for (std::size_t level = 0; level < levels.size(); ++level) {
    for (const auto name : levels[level]) {
      if (isInside(file, name) && name.size() > found.name.size()) found = {name, level};
    }
  }
  return found;
}

/// The text between the quotes or angle brackets of an include; empty for any other line.
std::string includedBy(std::string_view line) {
  constexpr std::string_view blanks = " \t";
  const auto skip = [&](std::string_view word) {
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    if (!line.starts_with(word)) return false;
    line.remove_prefix(word.size());
    return true;
  };
  if (!skip("#") || !skip("include") || !(skip("\"") || skip("<"))) return {};
  return std::string(line.substr(0, line.find_first_of("\">")));
}

std::vector<std::string> includesOf(const Path& file) {
  std::vector<std::string> includes;
  std::istringstream lines(readFile(file));
  for (std::string line; std::getline(lines, line);) {
    const std::string included = includedBy(line);
    if (!included.empty()) includes.push_back(included);
  }
  return includes;
}

bool belongsToQtWidgets(const std::string& header) {
  static const Path widgets = Path(QLibraryInfo::path(QLibraryInfo::HeadersPath).toStdString()) / "QtWidgets";
  return header.starts_with("QtWidgets") || std::filesystem::exists(widgets / header);
}

/// Whether a file may include this header. A header outside all rooms comes from a library or is generated.
bool mayInclude(std::string_view file, const std::string& included) {
  const Room from = roomOf(file);
  if (included.starts_with("..")) return false;
  if (belongsToQtWidgets(included)) return from.name == "window";
  const Room to = roomOf(included);
  return to.name.empty() || to.name == from.name || to.level < from.level;
}

/// "A includes B" for every include below the folder that goes up or sideways.
std::vector<std::string> violationsIn(const Path& sources) {
  std::vector<std::string> violations;
  for (const auto& file : filesBelow(sources)) {
    if (!file.ends_with(".h") && !file.ends_with(".cpp")) continue;
    if (roomOf(file).name.empty()) violations.push_back(file + " is in no room of the list");
    for (const auto& included : includesOf(sources / file)) {
      if (!mayInclude(file, included)) violations.push_back(file + " includes " + included);
    }
  }
  return violations;
}

TEST(IncludesTest, OnlyGoDown) { EXPECT_THAT(violationsIn(KESTROVA_SOURCES), IsEmpty()); }

class PlantedIncludeTest : public testing::Test {
 protected:
  std::vector<std::string> violationsOf(const Path& file, const std::string& include) {
    writeFile(sources_ / file, "#pragma once\n#include " + include + "\n");
    return violationsIn(sources_.path());
  }

  TemporaryFolder sources_;
};

TEST_F(PlantedIncludeTest, IsNamedWithBothFilesWhenItRunsUp) {
  EXPECT_THAT(violationsOf("scan/walk.h", "\"app/controls.h\""),
              ElementsAre("scan/walk.h includes app/controls.h"));
}

TEST_F(PlantedIncludeTest, IsNamedWhenItRunsSideways) {
  EXPECT_THAT(violationsOf("imaging/png/png.h", "\"imaging/jpeg/jpeg.h\""),
              ElementsAre("imaging/png/png.h includes imaging/jpeg/jpeg.h"));
}

TEST_F(PlantedIncludeTest, IsNamedWhenOneFrontEndIncludesTheOther) {
  EXPECT_THAT(violationsOf("cli/main.cpp", "\"window/main_window.h\""),
              ElementsAre("cli/main.cpp includes window/main_window.h"));
}

TEST_F(PlantedIncludeTest, IsNamedWhenARoomIncludesTheEntrancesAboveIt) {
  EXPECT_THAT(violationsOf("imaging/exif/exif.h", "\"imaging/photo_rewrite.h\""),
              ElementsAre("imaging/exif/exif.h includes imaging/photo_rewrite.h"));
}

TEST_F(PlantedIncludeTest, IsNamedWhateverItsSpelling) {
  EXPECT_THAT(violationsOf("model/verdict.h", "  <app/controls.h>  // so"),
              ElementsAre("model/verdict.h includes app/controls.h"));
  EXPECT_THAT(violationsOf("model/verdict.h", "\"../app/controls.h\""),
              ElementsAre("model/verdict.h includes ../app/controls.h"));
}

TEST_F(PlantedIncludeTest, OfQtWidgetsIsLeftToTheWindow) {
  EXPECT_THAT(violationsOf("window/panel.h", "<QWidget>"), IsEmpty());
  EXPECT_THAT(violationsOf("app/controls.h", "<QWidget>"), ElementsAre("app/controls.h includes QWidget"));
  EXPECT_THAT(violationsOf("app/controls.h", "<QtWidgets/QLabel>"),
              ElementsAre("app/controls.h includes QtWidgets/QLabel"));
}

TEST_F(PlantedIncludeTest, IsFineWhenItGoesDownOrStays) {
  EXPECT_THAT(violationsOf("imaging/photo_rewrite.cpp", "\"imaging/jpeg/jpeg.h\""), IsEmpty());
  EXPECT_THAT(violationsOf("app/manager/scan.cpp", "\"app/organise_manager.h\""), IsEmpty());
  EXPECT_THAT(violationsOf("window/main.cpp", "<QString>"), IsEmpty());
}

TEST_F(PlantedIncludeTest, NeedsARoomThatIsListed) {
  EXPECT_THAT(violationsOf("helpers/many.h", "<string>"), ElementsAre(HasSubstr("helpers/many.h")));
}

}  // namespace
}  // namespace kestrova
