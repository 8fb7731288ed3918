#pragma once

#include "platform/file_manager.h"

#include <cerrno>

namespace kestrova {

// The numbers by which the operations distinguish errors. The two for a full volume differ on purpose:
// copying knows one of them, writing photos the other.
constexpr int existingFileCode = 516;  ///< the target exists
constexpr int fullWhenCopying = 512;
constexpr int fullWhenWriting = 640;

/// The number of an error; every error except the two above keeps the system's own.
inline int errorCode(const FileError& error, int fullVolumeCode) {
  switch (error.kind) {
    case FileError::Kind::alreadyExists:
      return existingFileCode;
    case FileError::Kind::noSpace:
      return fullVolumeCode;
    case FileError::Kind::notFound:
    case FileError::Kind::unreadable:
    case FileError::Kind::other:
      return error.code;
  }
  return error.code;
}

/// Whether an error of writing tells of the whole volume: it was taken away, or nothing can be written to it
/// any more.
constexpr bool meansVolumeIsLost(int systemCode) {
  switch (systemCode) {
    case EIO:
    case ENODEV:
    case ENXIO:
    case EROFS:
    case ESTALE:
    case ENOTCONN:
      return true;
    default:
      return false;
  }
}

inline int copyErrorCode(const FileError& error) { return errorCode(error, fullWhenCopying); }
inline int writeErrorCode(const FileError& error) { return errorCode(error, fullWhenWriting); }

}  // namespace kestrova
