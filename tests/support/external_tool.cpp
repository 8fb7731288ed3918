#include "support/external_tool.h"

#include "support/patience.h"

#include <QProcess>
#include <QString>
#include <QStringList>
#include <cmath>
#include <stdexcept>

namespace kestrova::test {

ToolRun runTool(const std::string& program, const std::vector<std::string>& arguments) {
  QStringList list;
  for (const auto& argument : arguments) list << QString::fromStdString(argument);
  QProcess process;
  process.start(QString::fromStdString(program), list);
  if (!process.waitForFinished(static_cast<int>(patience.count())) ||
      process.exitStatus() != QProcess::NormalExit)
    return {};
  return {process.exitCode(), process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

Picture pictureOf(const Path& file, const std::vector<std::string>& operations, bool alpha) {
  const std::string source = file.native() + "[0]";
  std::vector<std::string> arguments{source};
  arguments.insert(arguments.end(), operations.begin(), operations.end());
  arguments.insert(arguments.end(), {"-colorspace", "sRGB", "-depth", "16", "-endian", "MSB", "-write",
                                     "info:fd:2", alpha ? "rgba:-" : "rgb:-"});
  arguments.insert(arguments.begin() + 1, {"-format", "%w %h\n"});
  const ToolRun run = runTool("convert", arguments);
  Picture picture;
  picture.channels = alpha ? 4 : 3;
  if (run.status != 0 || std::sscanf(run.errors.c_str(), "%d %d", &picture.width, &picture.height) != 2) {
    throw std::runtime_error("convert: " + run.errors);
  }
  picture.samples.resize(run.output.size() / 2);
  for (std::size_t i = 0; i < picture.samples.size(); ++i) {
    const auto high = static_cast<std::uint8_t>(run.output[2 * i]);
    const auto low = static_cast<std::uint8_t>(run.output[2 * i + 1]);
    picture.samples[i] = static_cast<std::uint16_t>(high << 8 | low);
  }
  return picture;
}

double likeness(const Picture& one, const Picture& other) {
  if (one.width != other.width || one.height != other.height || one.samples.size() != other.samples.size())
    return 0;
  double squares = 0;
  for (std::size_t i = 0; i < one.samples.size(); ++i) {
    const double difference = static_cast<double>(one.samples[i]) - static_cast<double>(other.samples[i]);
    squares += difference * difference;
  }
  if (squares == 0) return identical;
  return 20 * std::log10(65535.0) - 10 * std::log10(squares / static_cast<double>(one.samples.size()));
}

}  // namespace kestrova::test
