#include "support/folder_state.h"
#include "support/process.h"
#include "support/random_tree.h"
#include "support/text_bytes.h"
#include "toolkit/image.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <set>

#include <gmock/gmock.h>
#include <unistd.h>

// What is true for every run with every tree and all options: the real program on random trees. The test's
// number is the tree's seed. KESTROVA_TREES says how many trees each test uses.

namespace kestrova::test {

namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using Words = std::vector<std::string>;

/// Random options, and what they mean for the files.
class ChosenOptions {
 public:
  explicit ChosenOptions(unsigned seed) : random_(seed) {
    const std::string media = choose("--media", {"all", "photos", "videos", "all"});
    const std::string formats = choose("--photo-formats", {"jpeg", "jpeg+tiff", "jpeg+tiff+png"});
    const std::string size = choose("--size", {"original", "720p", "1080p", "original"});
    if (media != "videos") extensions_ = {"jpg", "jpeg"};
    if (media != "videos" && formats != "jpeg") extensions_.insert("tif");
    if (media != "videos" && formats == "jpeg+tiff+png") extensions_.insert("png");
    if (media != "photos") extensions_.insert({"mov", "mp4"});
    const bool isUpright = oneIn(2);
    if (!isUpright) words_.emplace_back("--no-upright");
    skipsPhotos_ = oneIn(4);
    skipsVideos_ = oneIn(4);
    if (skipsPhotos_) words_.emplace_back("--skip-small-photos");
    if (skipsVideos_) words_.emplace_back("--skip-small-videos");
    copiesOnly_ = !isUpright && size == "original";
  }

  const Words& words() const { return words_; }
  bool take(const TreeFile& file) const { return extensions_.contains(file.extension); }
  /// Whether a filter may leave out such a file because it is small.
  bool mayLeaveOut(const TreeFile& file) const { return file.isVideo() ? skipsVideos_ : skipsPhotos_; }
  /// Whether no photo is rewritten.
  bool copiesOnly() const { return copiesOnly_; }

 private:
  std::string choose(const std::string& option, const Words& values) {
    const std::string& value = values[random_() % values.size()];
    words_.push_back(option + '=' + value);
    return value;
  }
  bool oneIn(unsigned times) { return random_() % times == 0; }

  std::mt19937 random_;
  Words words_;
  std::set<std::string> extensions_;
  bool skipsPhotos_ = false;
  bool skipsVideos_ = false;
  bool copiesOnly_ = false;
};

struct Amount {
  std::int64_t files = 0;
  std::int64_t bytes = 0;
  bool operator==(const Amount&) const = default;
};

Amount operator+(const Amount& a, const Amount& b) { return {a.files + b.files, a.bytes + b.bytes}; }

std::ostream& operator<<(std::ostream& stream, const Amount& amount) {
  return stream << amount.files << " files of " << amount.bytes << " bytes";
}

/// What a run said about itself.
struct Report {
  ProcessResult result;
  QJsonObject summary;

  Amount of(const char* name, const char* kind = nullptr) const {
    QJsonObject amount = summary[QLatin1String(name)].toObject();
    if (kind != nullptr) amount = amount[QLatin1String(kind)].toObject();
    return {amount[QLatin1String("files")].toInteger(-1), amount[QLatin1String("bytes")].toInteger(-1)};
  }
};

/// Without root's right to read everything, so that unreadable files really are unreadable.
Words asAnyUser(const Words& command) {
  if (geteuid() != 0) return command;
  Words words{"setpriv", "--bounding-set=-dac_override,-dac_read_search",
              "--inh-caps=-dac_override,-dac_read_search"};
  words.insert(words.end(), command.begin(), command.end());
  return words;
}

bool isBelow(const Path& folder, const Path& path) {
  return path.native().starts_with(folder.native() + '/');
}

/// Whether a run treats one as a duplicate of the other.
bool countAsEqual(const TreeFile& a, const TreeFile& b) {
  constexpr std::size_t comparedLength = 40960;
  return a.contents.size() == b.contents.size() &&
         a.contents.compare(0, comparedLength, b.contents, 0, comparedLength) == 0;
}

/// A tree, often with one of its folders as a second source, a target in which the names of two files are
/// taken, and options.
class CliRandomTrees : public testing::TestWithParam<unsigned> {
 protected:
  CliRandomTrees() {
    const auto files = writeRandomTree(in_, GetParam());
    const Path folder = files.at(GetParam() % files.size()).path.parent_path();
    if (folder != in_) sources_.push_back(folder);
    for (const Path& source : sources_) {
      for (const TreeFile& file : files) {
        if (options_.take(file) && isBelow(source, file.path)) candidates_.push_back(file);
      }
    }
    for (std::size_t i = 0; i < candidates_.size() && i < 4; i += 2) {
      writeFile(out_ / candidates_[i].targetName(), "was here");
    }
    before_ = stateOf(out_);
    const Words& words = options_.words();
    trace_.emplace(__FILE__, __LINE__, "with " + testing::PrintToString(words));
  }

  Report organise() const {
    Words words{KESTROVA_CLI, "organise", "--to", out_, "--folders=short", "--json"};
    words.insert(words.end(), sources_.begin(), sources_.end());
    words.insert(words.end(), options_.words().begin(), options_.words().end());
    const auto result = runProcess(asAnyUser(words), {.environment = {"TZ=UTC", "LC_ALL=C"}});
    return {result, QJsonDocument::fromJson(QByteArray::fromStdString(result.out)).object()};
  }

  /// Their names, relative to the target.
  std::vector<std::string> newTargets() const {
    std::vector<std::string> names;
    for (const auto& name : filesBelow(out_)) {
      if (!before_.contains(name)) names.push_back(name);
    }
    return names;
  }
  Amount newAmount() const {
    Amount sum;
    for (const auto& name : newTargets())
      sum = sum + Amount{1, static_cast<std::int64_t>(fs::file_size(out_ / name))};
    return sum;
  }
  /// Whether the target holds the bytes of a file with that name, or a complete picture made from one.
  bool isRight(const std::string& name) const {
    const std::string contents = readFile(out_ / name);
    bool hasSource = false;
    for (const TreeFile& file : candidates_) {
      if (file.targetName() != name || !file.isReadable) continue;
      if (file.contents == contents) return true;
      hasSource |= !file.isVideo();
    }
    const auto picture = Image::fromData(viewOf(contents));
    return hasSource && !options_.copiesOnly() && picture && !picture->representations().empty();
  }

  TemporaryFolder root_;
  const Path in_ = root_ / "in";
  const Path out_ = root_ / "out";
  const ChosenOptions options_{GetParam()};
  std::vector<Path> sources_{in_};
  std::vector<TreeFile> candidates_;  ///< once for each source that they are in
  FolderState before_;
  std::optional<testing::ScopedTrace> trace_;
};

std::int64_t countOf(std::string_view text, std::string_view part) {
  std::int64_t count = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size()))
    ++count;
  return count;
}

}  // namespace

TEST_P(CliRandomTrees, AreAccountedForFileByFile) {
  Amount all;
  for (const TreeFile& file : candidates_) {
    all = all + Amount{1, static_cast<std::int64_t>(file.contents.size())};
  }
  const Report run = organise();
  const Amount written = run.of("written", "total");
  const Amount decided = written + run.of("alreadyThere") + run.of("small") + run.of("exists") +
                         run.of("failed") + run.of("unreadable") + run.of("notReached");
  const Amount setAside = run.of("duplicates") + run.of("passedOver");
  EXPECT_EQ((decided + setAside).files, all.files);
  EXPECT_EQ(run.of("written", "photos") + run.of("written", "videos") + run.of("rewritten"), written);
  if (options_.copiesOnly()) {
    EXPECT_EQ(decided + setAside, all);
    EXPECT_EQ(newAmount(), written);
  } else {
    EXPECT_LE(newAmount().files, written.files);
  }

  const Amount found = run.of("found", "total");
  EXPECT_EQ(run.of("found", "photos") + run.of("found", "videos"), found);
  const std::int64_t notFound = all.files - (found + setAside).files;
  EXPECT_GE(notFound, 0);
  EXPECT_LE(notFound, run.of("unreadable").files);
}

TEST_P(CliRandomTrees, FailOnlyWhereAFileCannotBeRead) {
  const auto unreadable = std::ranges::count(candidates_, false, &TreeFile::isReadable);
  const Report run = organise();
  EXPECT_EQ(run.of("notReached"), Amount());
  EXPECT_EQ(run.of("failed"), Amount()) << run.result.err;
  EXPECT_LE(run.of("unreadable").files, unreadable) << run.result.err;
  const QJsonValue folders = run.summary[QLatin1String("unreadable")][QLatin1String("folders")];
  EXPECT_EQ(countOf(run.result.err, "kestrova-cli: not readable: "),
            run.of("unreadable").files + folders.toInteger(-1))
      << run.result.err;
  const bool isWhole = run.of("unreadable").files == 0 && folders.toInteger() == 0;
  EXPECT_EQ(run.result.status, isWhole ? 0 : 1);
}

TEST_P(CliRandomTrees, AreNotTouched) {
  const FolderState before = stateOf(in_);
  organise();
  EXPECT_THAT(changes(before, stateOf(in_)), IsEmpty());
}

TEST_P(CliRandomTrees, EndInWholeFilesUnderTheirNames) {
  organise();
  for (const auto& name : newTargets()) EXPECT_TRUE(isRight(name)) << name;
  for (const auto& [name, state] : before_) {
    EXPECT_EQ(stateOf(out_)[name].contents, state.contents) << name;
  }
}

TEST_P(CliRandomTrees, AreInTheTargetUnlessLeftOutOnPurpose) {
  organise();
  for (const TreeFile& file : candidates_) {
    // An empty file counts as a copy of an unreadable one of 0 bytes: neither has any content to lose.
    if (!file.isReadable || file.contents.empty() || options_.mayLeaveOut(file)) continue;
    const bool isThere = std::ranges::any_of(candidates_, [&](const TreeFile& other) {
      return countAsEqual(file, other) && fs::exists(out_ / other.targetName());
    });
    EXPECT_TRUE(isThere) << file.path << " as " << file.targetName();
  }
}

TEST_P(CliRandomTrees, AreOrganisedOnce) {
  organise();
  const FolderState once = stateOf(out_);
  const Report again = organise();
  EXPECT_EQ(again.of("written", "total"), Amount());
  EXPECT_THAT(changes(once, stateOf(out_)), IsEmpty());
}

namespace {

unsigned numberOfTrees() {
  const char* number = std::getenv("KESTROVA_TREES");
  return number == nullptr ? 6 : static_cast<unsigned>(std::atoi(number));
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Seeds, CliRandomTrees, testing::Range(0U, numberOfTrees()));

}  // namespace kestrova::test
