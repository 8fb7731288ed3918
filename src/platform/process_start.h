#pragma once

namespace kestrova {

/// What a process has to settle before it opens its first file. To be called first in main.
///
/// - Where a standard descriptor is missing, the null device takes its place: otherwise the first file that
/// is
///   opened would get its number, and with it all that is printed.
/// - Many files may be open, as far as the system permits it: files wait for their names.
/// - A file that may not grow further, and a reader that went away, are errors of the call, not the process's
///   end.
void prepareProcess();

}  // namespace kestrova
