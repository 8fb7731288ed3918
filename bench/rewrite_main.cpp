// Scales photos as a run would, without the run: for measuring and for trying things out.
//   kestrova-rewrite [--box WIDTHxHEIGHT] [--upright] [--threads N] FOLDER PHOTO...
#include "imaging/photo_rewrite.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace kestrova;
using imaging::PixelSize;
namespace fs = std::filesystem;

struct Options {
  std::optional<PixelSize> box;
  bool upright = false;
  int threads = 1;
  std::vector<fs::path> paths;  // the folder first
};

template <class Number>
Number numberIn(std::string_view text) {
  Number number{};
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

Options parse(const std::vector<std::string_view>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--upright") {
      options.upright = true;
    } else if (argument == "--threads" && i + 1 < arguments.size()) {
      options.threads = numberIn<int>(arguments[++i]);
    } else if (argument == "--box" && i + 1 < arguments.size()) {
      const std::string_view box = arguments[++i];
      const std::size_t cross = std::min(box.find('x'), box.size() - 1);
      options.box = {numberIn<std::int64_t>(box), numberIn<std::int64_t>(box.substr(cross + 1))};
    } else {
      options.paths.emplace_back(argument);
    }
  }
  return options;
}

/// The largest size of the same proportions within the box; the size itself when it is smaller.
PixelSize fitted(const PixelSize& size, const PixelSize& box) {
  const double scale = std::min({1.0, static_cast<double>(box.width) / static_cast<double>(size.width),
                                 static_cast<double>(box.height) / static_cast<double>(size.height)});
  const auto scaled = [scale](std::int64_t side) {
    return std::max<std::int64_t>(1, std::llround(static_cast<double>(side) * scale));
  };
  return {scaled(size.width), scaled(size.height)};
}

tl::expected<imaging::RewrittenPhoto, imaging::RewriteError> rewrite(const Bytes& file,
                                                                     const Options& options) {
  const auto photo = imaging::measurePhoto(file);
  if (!photo) return tl::unexpected(photo.error());
  imaging::RewriteRequest request{std::nullopt, options.upright};
  if (options.box)
    request.size = fitted(options.upright ? photo->size.upright() : photo->size.stored, *options.box);
  return imaging::rewritePhoto(file, *photo, request);
}

Bytes contents(const fs::path& path) {
  Bytes bytes(fs::file_size(path));
  std::ifstream(path, std::ios::binary)
      .read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

bool rewriteFile(const fs::path& path, const Options& options) {
  const auto result = rewrite(contents(path), options);
  if (!result) {
    std::fprintf(stderr, "%s: %s\n", path.c_str(), result.error().reason.c_str());
    return false;
  }
  std::ofstream output(options.paths.front() / path.filename(), std::ios::binary);
  output.write(reinterpret_cast<const char*>(result->bytes.data()),
               static_cast<std::streamsize>(result->bytes.size()));
  return output.good();
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = parse({argv + 1, argv + argc});
  if (options.paths.size() < 2)
    return std::fputs("kestrova-rewrite: a folder and photos are wanted\n", stderr), 2;
  std::atomic<std::size_t> next{1};
  std::atomic<int> failed{0};
  const auto work = [&] {
    for (std::size_t i = next++; i < options.paths.size(); i = next++) {
      if (!rewriteFile(options.paths[i], options)) ++failed;
    }
  };
  std::vector<std::thread> threads;
  for (int i = 1; i < options.threads; ++i) threads.emplace_back(work);
  work();
  for (auto& thread : threads) thread.join();
  return failed == 0 ? 0 : 1;
}
