#include "cli/progress.h"

#include "platform/printable_text.h"

#include <QStringList>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

namespace kestrova::cli {

namespace {

using std::chrono::seconds;

constexpr int barWidth = 20;
constexpr int plainWidth = 200;

double work(const Amount& amount) { return workOf(amount.files, amount.bytes); }

double share(const Standing& standing) {
  const double whole = work(standing.found);
  return whole > 0 ? std::clamp(work(standing.settled) / whole, 0.0, 1.0) : 0.0;
}

QString bar(double share) {
  const int full = static_cast<int>(share * barWidth);
  const QString line = QString(full, u'=') + (full < barWidth ? QStringLiteral(">") : QString());
  return QStringLiteral("[%1] %2%").arg(line.leftJustified(barWidth)).arg(static_cast<int>(share * 100), 3);
}

QString timeText(seconds left) {
  const auto count = left.count();
  if (count < 60) return QStringLiteral("%1 s left").arg(std::max<qint64>(1, count));
  if (count < 3600) return QStringLiteral("%1 min left").arg((count + 30) / 60);
  return QStringLiteral("%1 h %2 min left").arg(count / 3600).arg(count % 3600 / 60);
}

int terminalWidth() {
  winsize size{};
  const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : 80;
}

void writeToStandardError(const QString& text) {
  const QByteArray bytes = text.toUtf8();
  std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
}

}  // namespace

QString progressLine(const Standing& standing, std::optional<seconds> timeLeft, int width) {
  QStringList parts;
  if (standing.phase == RunPhase::scanning) {
    QString found = QStringLiteral("%1 found").arg(standing.found.files);
    if (standing.duplicates) found += QStringLiteral(", %1 duplicates").arg(*standing.duplicates);
    parts << found;
  } else {
    parts << bar(share(standing))
          << QStringLiteral("%1 of %2").arg(standing.settled.files).arg(standing.found.files);
  }
  if (timeLeft) parts << timeText(*timeLeft);
  parts << printableText(standing.status);
  return parts.join(QStringLiteral("  ")).left(width);
}

Progress::~Progress() {
  if (isDrawn_) writeToStandardError(QStringLiteral("\r\x1b[K"));
}

Progress::Mode Progress::modeOfStandardError() {
  const char* terminal = std::getenv("TERM");
  const bool canDraw = terminal != nullptr && std::string_view(terminal) != "dumb";
  return canDraw && isatty(STDERR_FILENO) == 1 ? Mode::terminal : Mode::plain;
}

void Progress::show(const Standing& standing) {
  if (mode_ == Mode::silent) return;
  const auto timeLeft = guess(standing);
  if (mode_ == Mode::plain) {
    addLine(progressLine(standing, timeLeft, plainWidth));
  } else {
    // The last column stays free: some terminals wrap after it.
    drawLine(progressLine(standing, timeLeft, terminalWidth() - 1));
  }
}

// From writing alone, as scanning and planning have other speeds.
std::optional<seconds> Progress::guess(const Standing& standing) {
  if (standing.phase != RunPhase::executing) return std::nullopt;
  return timeLeft_.guess(work(standing.settled), work(standing.found), Clock::now());
}

void Progress::drawLine(const QString& line) {
  writeToStandardError(u'\r' + line + QStringLiteral("\x1b[K"));
  isDrawn_ = true;
}

void Progress::addLine(const QString& line) {
  const auto now = Clock::now();
  if (now - plainTime_ < plainInterval_) return;
  plainTime_ = now;
  writeToStandardError(line + u'\n');
}

}  // namespace kestrova::cli
