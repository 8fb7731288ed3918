#include "platform/log.h"

#include <cstdio>

namespace kestrova {

Q_LOGGING_CATEGORY(kestrovaLog, "kestrova", QtInfoMsg)

namespace {

QString oneLine(const QString& text) {
  QString line;
  line.reserve(text.size());
  for (const QChar c : text) {
    if (c == u'\n') {
      line += QStringLiteral("\\n");
    } else if (c.unicode() < 0x20 || c.unicode() == 0x7f) {
      line += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
    } else {
      line += c;
    }
  }
  return line;
}

void writeToStandardError(QtMsgType, const QMessageLogContext&, const QString& message) {
  const QByteArray line = message.toUtf8() + '\n';
  std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stderr);
}

}  // namespace

void log(const QString& text) { qCInfo(kestrovaLog).noquote() << oneLine(text); }

QString displayPath(const Path& path) {
  const std::string& bytes = path.native();
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

void installLog() { qInstallMessageHandler(writeToStandardError); }

}  // namespace kestrova
