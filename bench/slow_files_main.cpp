// Shows a folder at another place through FUSE and takes 2 ms for each call, as a network does. Extended
// attributes and files without names are missing, as on many networks.
//   kestrova-slow-files FOLDER MOUNT_POINT      fusermount3 -u MOUNT_POINT ends it
#define FUSE_USE_VERSION 31
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

std::string folder;

std::string realPath(const char* path) { return folder + path; }

void wait() {
  const timespec pause{0, 2'000'000};
  nanosleep(&pause, nullptr);
}

/// What FUSE wants to hear of a system call that returns -1 after an error.
int answer(long result) {
  const int value = result < 0 ? -errno : static_cast<int>(result);
  wait();
  return value;
}

int answerHandle(int descriptor, fuse_file_info* info) {
  info->fh = static_cast<std::uint64_t>(descriptor);
  return descriptor < 0 ? answer(-1) : answer(0);
}

int descriptorOf(const fuse_file_info* info) { return static_cast<int>(info->fh); }

int readFolder(const char* path, void* buffer, fuse_fill_dir_t fill, off_t, fuse_file_info*,
               fuse_readdir_flags) {
  DIR* stream = opendir(realPath(path).c_str());
  if (stream == nullptr) return answer(-1);
  while (const dirent* entry = readdir(stream)) {
    struct stat status {};
    status.st_ino = entry->d_ino;
    status.st_mode = static_cast<mode_t>(DTTOIF(entry->d_type));
    if (fill(buffer, entry->d_name, &status, 0, fuse_fill_dir_flags{}) != 0) break;
  }
  return answer(closedir(stream));
}

fuse_operations operations() {
  fuse_operations calls{};
  calls.getattr = [](const char* path, struct stat* status, fuse_file_info*) {
    return answer(lstat(realPath(path).c_str(), status));
  };
  calls.readdir = readFolder;
  calls.mkdir = [](const char* path, mode_t mode) { return answer(mkdir(realPath(path).c_str(), mode)); };
  calls.rmdir = [](const char* path) { return answer(rmdir(realPath(path).c_str())); };
  calls.unlink = [](const char* path) { return answer(unlink(realPath(path).c_str())); };
  calls.link = [](const char* from, const char* to) {
    return answer(link(realPath(from).c_str(), realPath(to).c_str()));
  };
  calls.rename = [](const char* from, const char* to, unsigned flags) {
    return answer(renameat2(AT_FDCWD, realPath(from).c_str(), AT_FDCWD, realPath(to).c_str(), flags));
  };
  calls.chmod = [](const char* path, mode_t mode, fuse_file_info*) {
    return answer(chmod(realPath(path).c_str(), mode));
  };
  calls.chown = [](const char* path, uid_t user, gid_t group, fuse_file_info*) {
    return answer(lchown(realPath(path).c_str(), user, group));
  };
  calls.utimens = [](const char* path, const timespec times[2], fuse_file_info*) {
    return answer(utimensat(AT_FDCWD, realPath(path).c_str(), times, AT_SYMLINK_NOFOLLOW));
  };
  calls.truncate = [](const char* path, off_t size, fuse_file_info*) {
    return answer(truncate(realPath(path).c_str(), size));
  };
  calls.create = [](const char* path, mode_t mode, fuse_file_info* info) {
    return answerHandle(open(realPath(path).c_str(), info->flags | O_CREAT | O_CLOEXEC, mode), info);
  };
  calls.open = [](const char* path, fuse_file_info* info) {
    return answerHandle(open(realPath(path).c_str(), info->flags | O_CLOEXEC), info);
  };
  calls.read = [](const char*, char* bytes, std::size_t count, off_t at, fuse_file_info* info) {
    return answer(pread(descriptorOf(info), bytes, count, at));
  };
  calls.write = [](const char*, const char* bytes, std::size_t count, off_t at, fuse_file_info* info) {
    return answer(pwrite(descriptorOf(info), bytes, count, at));
  };
  calls.fsync = [](const char*, int dataOnly, fuse_file_info* info) {
    return answer(dataOnly != 0 ? fdatasync(descriptorOf(info)) : fsync(descriptorOf(info)));
  };
  calls.release = [](const char*, fuse_file_info* info) { return answer(close(descriptorOf(info))); };
  calls.statfs = [](const char* path, struct statvfs* status) {
    return answer(statvfs(realPath(path).c_str(), status));
  };
  return calls;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return std::fputs("kestrova-slow-files: a folder and a mount point are wanted\n", stderr), 2;
  folder = std::filesystem::canonical(argv[1]).native();
  char options[] = "-odefault_permissions";
  char* arguments[] = {argv[0], options, argv[2], nullptr};
  const fuse_operations calls = operations();
  return fuse_main(3, arguments, &calls, nullptr);
}
