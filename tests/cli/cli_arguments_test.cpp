#include "cli/arguments.h"

#include <gmock/gmock.h>

namespace kestrova::cli {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using WordList = std::vector<std::string_view>;
using Organise = tl::expected<OrganiseArguments, std::string>;

Organise parse(const WordList& words) {
  const auto arguments = parseArguments(words, "/home/me");
  if (!arguments) return tl::unexpected(arguments.error());
  return std::get<OrganiseArguments>(*arguments);
}

/// What a complete command line with these additional words gives.
Organise parseWith(WordList words) {
  words.insert(words.begin(), {"organise", "/in", "--to", "/out"});
  return parse(words);
}

std::string errorOf(const Organise& result) { return result ? "no error" : result.error(); }

template <typename Type>
bool asksFor(const WordList& words) {
  const auto arguments = parseArguments(words, "/home/me");
  return arguments && std::holds_alternative<Type>(*arguments);
}

}  // namespace

TEST(CliArguments, TakeANumberOfJobs) {
  EXPECT_EQ(parseWith({})->jobs, std::nullopt);
  EXPECT_EQ(parseWith({"--jobs", "1"})->jobs, 1U);
  EXPECT_EQ(parseWith({"--jobs=64"})->jobs, 64U);
  for (const char* const number : {"0", "65", "-1", "2x", "two", "", "99999999999999999999"}) {
    const std::string word = std::string("--jobs=") + number;
    EXPECT_EQ(errorOf(parseWith({word})),
              "--jobs takes a number from 1 to 64, not \"" + std::string(number) + '"');
  }
  EXPECT_EQ(errorOf(parseWith({"--jobs"})), "--jobs needs a number from 1 to 64");
}

TEST(CliArguments, TakesSourcesAndTarget) {
  const auto arguments = parse({"organise", "/a", "/b c", "--to", "/out"});
  ASSERT_TRUE(arguments) << arguments.error();
  EXPECT_THAT(arguments->sources, ElementsAre(Path("/a"), Path("/b c")));
  EXPECT_EQ(arguments->target, Path("/out"));
}

TEST(CliArguments, StartFromTheWindowsDefaults) {
  const auto arguments = parseWith({});
  ASSERT_TRUE(arguments) << arguments.error();
  EXPECT_EQ(arguments->media, Media::photosAndVideos);
  EXPECT_EQ(arguments->photoFormats, PhotoFormats::jpeg);
  EXPECT_EQ(arguments->folders, FolderFormat::longName);
  EXPECT_EQ(arguments->size, Resolution::original);
  EXPECT_TRUE(arguments->upright);
  EXPECT_FALSE(arguments->skipSmallPhotos || arguments->skipSmallVideos);
  EXPECT_FALSE(arguments->json || arguments->quiet || arguments->log);
}

TEST(CliArguments, TakeEveryOption) {
  const auto arguments =
      parseWith({"--media", "videos", "--photo-formats", "jpeg+tiff+png", "--folders", "medium", "--size",
                 "1080p", "--no-upright", "--skip-small-photos", "--skip-small-videos", "--json", "--quiet",
                 "--log", "--dry-run", "--no-record", "--report", "rows.csv"});
  ASSERT_TRUE(arguments) << arguments.error();
  EXPECT_EQ(arguments->media, Media::videos);
  EXPECT_EQ(arguments->photoFormats, PhotoFormats::jpegTiffPng);
  EXPECT_EQ(arguments->folders, FolderFormat::mediumName);
  EXPECT_EQ(arguments->size, Resolution::fit1080p);
  EXPECT_FALSE(arguments->upright);
  EXPECT_TRUE(arguments->skipSmallPhotos && arguments->skipSmallVideos);
  EXPECT_TRUE(arguments->json && arguments->quiet && arguments->log);
  EXPECT_TRUE(arguments->dryRun && arguments->noRecord);
  EXPECT_EQ(arguments->report, Path("/home/me/rows.csv"));
}

TEST(CliArguments, TakeValuesAfterAnEqualsSign) {
  const auto arguments = parse({"--media=photos", "organise", "--to=/out=1", "/in"});
  ASSERT_TRUE(arguments) << arguments.error();
  EXPECT_EQ(arguments->media, Media::photos);
  EXPECT_EQ(arguments->target, Path("/out=1"));
}

TEST(CliArguments, TakeEverythingAfterTwoDashesAsSources) {
  const auto arguments = parse({"organise", "--to", "/out", "--", "--json", "-x", "--"});
  ASSERT_TRUE(arguments) << arguments.error();
  EXPECT_THAT(arguments->sources,
              ElementsAre(Path("/home/me/--json"), Path("/home/me/-x"), Path("/home/me/--")));
  EXPECT_FALSE(arguments->json);
}

TEST(CliArguments, MakePathsAbsoluteWithoutFollowingWhatMayBeALink) {
  const auto arguments = parse({"organise", "a", "./b/", "../c", "/d//e/.", ".", "--to", "link/../out"});
  ASSERT_TRUE(arguments) << arguments.error();
  EXPECT_THAT(arguments->sources, ElementsAre(Path("/home/me/a"), Path("/home/me/b"), Path("/home/me/../c"),
                                              Path("/d/e"), Path("/home/me")));
  EXPECT_EQ(arguments->sources.at(1).native(), "/home/me/b");
  EXPECT_EQ(arguments->target, Path("/home/me/link/../out"));
}

TEST(CliArguments, KeepPathsThatAreNotUtf8) {
  const auto arguments = parse({"organise", "/\xff\n", "--to", "\xc3"});
  ASSERT_TRUE(arguments) << arguments.error();
  EXPECT_EQ(arguments->sources.front().native(), "/\xff\n");
  EXPECT_EQ(arguments->target.native(), "/home/me/\xc3");
}

TEST(CliArguments, HelpAndVersionNeedNothingElse) {
  EXPECT_TRUE(asksFor<HelpRequest>({"--help"}));
  EXPECT_TRUE(asksFor<HelpRequest>({"organise", "--nonsense", "--help"}));
  EXPECT_TRUE(asksFor<VersionRequest>({"--version"}));
  EXPECT_FALSE(asksFor<HelpRequest>({"organise", "--to", "/out", "--", "--help"}));
}

TEST(CliArguments, MissWhatIsNecessary) {
  EXPECT_EQ(errorOf(parse({})), "no command is given: expected organise, check, undo or runs");
  EXPECT_EQ(errorOf(parse({"organise", "--to", "/out"})), "no source folder is given");
  EXPECT_EQ(errorOf(parse({"organise", "/in"})), "no target folder is given: --to FOLDER names it");
  EXPECT_EQ(errorOf(parse({"organise", "/in", "--to"})), "--to needs a folder");
  EXPECT_EQ(errorOf(parse({"organise", "/in", "--to="})), "--to needs a folder");
  EXPECT_EQ(errorOf(parse({"organise", "/in", "--to", ""})), "--to needs a folder");
  EXPECT_EQ(errorOf(parse({"organise", "", "--to", "/out"})), "the name of a source folder is empty");
}

TEST(CliArguments, TakeNoOptionForAFolder) {
  EXPECT_EQ(errorOf(parse({"organise", "/in", "--to", "--json"})), "--to needs a folder");
}

TEST(CliArguments, RefuseWhatIsUnknown) {
  EXPECT_EQ(errorOf(parse({"organize", "/in"})),
            "unknown command \"organize\": expected organise, check, undo or runs");
  for (const std::string_view option : {"--in", "--rescue", "--media-x", "-h", "-q", "--Json"}) {
    EXPECT_EQ(errorOf(parseWith({option})), "unknown option \"" + std::string(option) + '"');
  }
  EXPECT_EQ(errorOf(parseWith({"--in=x.csv"})), "unknown option \"--in\"");
}

TEST(CliArguments, ListTheValuesThatAreAllowed) {
  EXPECT_EQ(errorOf(parseWith({"--media", "music"})),
            "unknown value \"music\" for --media: it takes all, photos or videos");
  EXPECT_EQ(errorOf(parseWith({"--size=720P"})),
            "unknown value \"720P\" for --size: it takes original, 720p or 1080p");
  EXPECT_EQ(errorOf(parseWith({"--folders="})),
            "unknown value \"\" for --folders: it takes long, medium or short");
  EXPECT_EQ(errorOf(parseWith({"--photo-formats"})),
            "--photo-formats needs a value: jpeg, jpeg+tiff or jpeg+tiff+png");
}

TEST(CliArguments, RefuseAnOptionGivenTwice) {
  EXPECT_EQ(errorOf(parseWith({"--to", "/other"})), "--to is given twice");
  EXPECT_EQ(errorOf(parseWith({"--quiet", "--quiet"})), "--quiet is given twice");
  EXPECT_EQ(errorOf(parseWith({"--upright", "--no-upright"})), "--no-upright contradicts --upright");
}

TEST(CliArguments, RefuseAValueWhereNoneBelongs) {
  EXPECT_EQ(errorOf(parseWith({"--json=yes"})), "--json takes no value");
  EXPECT_EQ(errorOf(parseWith({"--help=all"})), "--help takes no value");
}

TEST(CliArguments, EscapeWhatATerminalWouldObey) {
  EXPECT_EQ(errorOf(parseWith({"--\x1b[2J\n\xff"})), "unknown option \"--\\x1b[2J\\n\\xff\"");
}

TEST(CliArguments, NameEveryOptionInTheHelp) {
  for (const char* option :
       {"--to", "--media", "--photo-formats", "--folders", "--size", "--upright", "--no-upright",
        "--skip-small-photos", "--skip-small-videos", "--json", "--quiet", "--log", "--help", "--version"}) {
    EXPECT_THAT(std::string(helpText()), HasSubstr(option));
  }
}

TEST(CliHelp, NamesEveryWordOfEveryOption) {
  const auto words = [](const auto& table) {
    return std::string(table[0].word)
        .append(1, '|')
        .append(table[1].word)
        .append(1, '|')
        .append(table[2].word);
  };
  const std::string help(helpText());
  EXPECT_THAT(help, HasSubstr("--media " + words(mediaTable)));
  EXPECT_THAT(help, HasSubstr("--photo-formats " + words(photoFormatsTable)));
  EXPECT_THAT(help, HasSubstr("--folders " + words(folderFormatTable)));
  EXPECT_THAT(help, HasSubstr("--size " + words(resolutionTable)));
}

}  // namespace kestrova::cli
