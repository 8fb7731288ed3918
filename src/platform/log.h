#pragma once

#include "platform/file_manager.h"

#include <QLoggingCategory>
#include <QString>

namespace kestrova {

/// The program's log: category "kestrova", level info, one line a message, on standard error.
Q_DECLARE_LOGGING_CATEGORY(kestrovaLog)

/// Writes one line to the log; line ends and other control characters inside the text are escaped.
/// Callable from any thread.
void log(const QString& text);

/// Whether the log is shown: check this before building a text in a loop over many files.
inline bool isLogging() { return kestrovaLog().isInfoEnabled(); }

/// A path for people to read: decoded as UTF-8, undecodable bytes replaced.
QString displayPath(const Path& path);

/// Makes `log` write bare texts to standard error, without Qt's decoration. Called once by each program's
/// `main`.
void installLog();

}  // namespace kestrova
