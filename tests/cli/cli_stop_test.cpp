#include "cli/cli_folders.h"
#include "support/sample_media.h"

#include <csignal>
#include <cstdint>
#include <thread>

#include <gmock/gmock.h>
#include <zlib.h>

// Runs that a signal stops.

namespace kestrova::test {

namespace {

/// So many that a run over them can be stopped before it ends.
constexpr std::size_t manyFiles = 600;

std::string contentsOfSize(std::size_t size) { return std::string(size, static_cast<char>('a' + size % 26)); }

void writeManyFiles(const Path& folder) {
  for (std::size_t size = 1; size <= manyFiles; ++size) {
    writeDatedFile(folder / (std::to_string(size) + ".jpg"), contentsOfSize(size));
  }
}

void waitForFirstFile(Process& process, const Path& folder) {
  while (filesBelow(folder).empty() && process.isRunning()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

void expectWholeFiles(const Path& folder) {
  for (const auto& name : filesBelow(folder)) {
    const std::string contents = readFile(folder / name);
    EXPECT_EQ(name, photoName(contents.size()));
    EXPECT_EQ(contents, contentsOfSize(contents.size()));
  }
}

/// The parameter is the signal.
class CliStop : public testing::TestWithParam<int> {};

}  // namespace

TEST_P(CliStop, FinishesTheCurrentFileAndGoesOnWithTheNextRun) {
  const Folders folders;
  writeManyFiles(folders.in);
  Process process(commandOf(folders.organising({"--json"})), inUtc);
  waitForFirstFile(process, folders.out);
  process.send(GetParam());
  process.send(GetParam());
  const auto result = process.wait();
  EXPECT_EQ(result.status, 130);
  const QJsonObject summary = jsonIn(result);
  EXPECT_EQ(summary[QLatin1String("status")].toString(), QStringLiteral("Stopped"));
  const auto written = filesBelow(folders.out).size();
  EXPECT_LT(written, manyFiles);
  EXPECT_EQ(static_cast<std::size_t>(totalFiles(summary, "written")), written);
  EXPECT_EQ(static_cast<std::size_t>(files(summary, "notReached")), manyFiles - written);
  expectWholeFiles(folders.out);

  EXPECT_EQ(folders.organise().status, 0);
  EXPECT_EQ(filesBelow(folders.out).size(), manyFiles);
  expectWholeFiles(folders.out);
}

namespace {

/// 900 million black pixels, which take seconds to read, in blocks of deflate that are all the same.
Bytes hugePng() {
  constexpr std::uint32_t side = 30'000;
  constexpr std::uint32_t rowsPerBlock = 100;
  const Bytes rows(rowsPerBlock * (side + 1), 0);  // each begins with the number of its filter
  Bytes block(rows.size() / 100);
  z_stream stream{};
  deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY);
  stream.next_in = const_cast<Bytef*>(rows.data());
  stream.avail_in = static_cast<uInt>(rows.size());
  stream.next_out = block.data();
  stream.avail_out = static_cast<uInt>(block.size());
  EXPECT_EQ(deflate(&stream, Z_FULL_FLUSH), Z_OK);
  block.resize(stream.total_out);
  deflateEnd(&stream);

  Bytes pixels{0x78, 0x01};
  for (std::uint32_t i = 0; i < side / rowsPerBlock; ++i)
    pixels.insert(pixels.end(), block.begin(), block.end());
  constexpr std::uint32_t checksum = static_cast<std::uint32_t>(std::uint64_t{side} * (side + 1) % 65521);
  pixels.insert(pixels.end(), {0x03, 0x00, checksum >> 8, checksum & 0xFF, 0x00, 0x01});
  const Bytes header{0, 0, side >> 8, side & 0xFF, 0, 0, side >> 8, side & 0xFF, 8, 0, 0, 0, 0};
  return joined({Bytes{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'}, pngChunk("IHDR", header),
                 pngChunk("eXIf", exifBlock({.orientation = 1}).encode()), pngChunk("IDAT", pixels),
                 pngChunk("IEND", {})});
}

}  // namespace

TEST_P(CliStop, GivesUpAPhotoThatWouldTakeLong) {
  const Folders folders;
  writeFile(folders.in / "huge.png", hugePng());
  const Path report = folders.root / "report.ndjson";
  Process process(commandOf(folders.organising(
                      {"--photo-formats", "jpeg+tiff+png", "--size", "1080p", "--json", "--report", report})),
                  inUtc);
  while (!std::filesystem::exists(folders.out / "2014/05/21") && process.isRunning())
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  process.send(GetParam());
  const auto result = process.wait();
  EXPECT_EQ(result.status, 130);
  EXPECT_EQ(files(jsonIn(result), "notReached"), 1);
  EXPECT_EQ(totalFiles(jsonIn(result), "written"), 0);
  EXPECT_TRUE(filesBelow(folders.out).empty());
  EXPECT_THAT(readFile(report), testing::HasSubstr("not-reached"));
}

TEST_P(CliStop, SaysThatAStoppedRunIsNotVerified) {
  const Folders folders;
  writeManyFiles(folders.in);
  Process process(commandOf(folders.organising({"--verify", "--no-record", "--json"})), inUtc);
  waitForFirstFile(process, folders.out);
  process.send(GetParam());
  const auto result = process.wait();
  EXPECT_EQ(result.status, 130);
  EXPECT_EQ(result.err, "kestrova-cli: the run was stopped, and what it wrote is not verified\n");
  EXPECT_FALSE(jsonIn(result).contains(QLatin1String("atRisk")));
}

INSTANTIATE_TEST_SUITE_P(Signals, CliStop, testing::Values(SIGINT, SIGTERM));

}  // namespace kestrova::test
