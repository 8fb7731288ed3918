#include "platform/log.h"

#include "platform/printable_text.h"

#include <cstdio>

namespace kestrova {

Q_LOGGING_CATEGORY(kestrovaLog, "kestrova", QtInfoMsg)

namespace {

void writeToStandardError(QtMsgType, const QMessageLogContext&, const QString& message) {
  const QByteArray line = message.toUtf8() + '\n';
  std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stderr);
}

}  // namespace

void log(const QString& text) { qCInfo(kestrovaLog).noquote() << printableText(text); }

QString displayPath(const Path& path) {
  const std::string& bytes = path.native();
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

void installLog() { qInstallMessageHandler(writeToStandardError); }

}  // namespace kestrova
