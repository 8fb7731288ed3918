#pragma once

#include "support/process.h"
#include "support/temporary_folder.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <chrono>
#include <string>
#include <vector>

// Runs the real program on trees of files that the tests make.

namespace kestrova::test {

using Words = std::vector<std::string>;

inline const ProcessOptions inUtc{.environment = {"TZ=UTC", "LC_ALL=C", "TERM=dumb"}};

inline Words operator+(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

/// The program with these arguments.
inline Words commandOf(const Words& arguments) { return Words{KESTROVA_CLI} + arguments; }

inline ProcessResult run(const Words& arguments) { return runProcess(commandOf(arguments), inUtc); }

/// A file last modified on 21 May 2014 at 13:45:02 UTC.
inline Path writeDatedFile(const Path& path, const std::string& contents) {
  constexpr std::chrono::sys_seconds modified(std::chrono::seconds(1400679902));
  writeFile(path, contents);
  std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(modified));
  return path;
}

/// The name of a photo of that date and size in the target, in short folders.
inline std::string photoName(std::size_t size) {
  return "2014/05/21/PHOTO_20140521134502_" + std::to_string(size) + ".JPG";
}

inline QJsonObject jsonIn(const ProcessResult& result) {
  return QJsonDocument::fromJson(QByteArray::fromStdString(result.out)).object();
}

/// A source and a target folder, and the command that organises one into the other.
struct Folders {
  TemporaryFolder root;
  Path in = root / "in";
  Path out = root / "out";

  Words organising(const Words& more = {}) const {
    return Words{"organise", in, "--to", out, "--folders", "short"} + more;
  }
  ProcessResult organise(const Words& more = {}) const { return run(organising(more)); }
  QJsonObject summary(const Words& more = {}) const { return jsonIn(organise(Words{"--json"} + more)); }
};

/// The number of files in a group of the summary; -1 if there is no such group.
inline int files(const QJsonObject& summary, const char* group) {
  return summary[QLatin1String(group)].toObject()[QLatin1String("files")].toInt(-1);
}
inline int totalFiles(const QJsonObject& summary, const char* group) {
  return files(summary[QLatin1String(group)].toObject(), "total");
}

}  // namespace kestrova::test
