// Opening files: CreateFileW.

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"
#include "qorgen/platform/linux/error/file_error.h"
#include "qorgen/platform/linux/filesystem/file_object.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/filesystem/shared_place.h"
#include "qorgen/platform/linux/owned_descriptor.h"

using namespace qorgen::platform;

namespace qorgen::platform {

FileObject::FileObject(OwnedDescriptor descriptor, DWORD access, std::unique_ptr<FileShare> share)
    : descriptor_(std::move(descriptor)), access_(access), share_(std::move(share)) {}

bool FileObject::MayRead() const {
  return (access_ & GENERIC_READ) != 0;
}
bool FileObject::MayWrite() const {
  return (access_ & GENERIC_WRITE) != 0;
}

}  // namespace qorgen::platform

namespace {

struct Request {
  std::string host;
  DWORD access;
  DWORD share;
  DWORD disposition;
  DWORD flags;

  [[nodiscard]] bool Creates() const {
    return disposition == CREATE_NEW || disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS;
  }
  [[nodiscard]] bool Truncates() const {
    return disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING;
  }
};

// What the file that is there already says to the request; 0 when it may be opened.
DWORD Objection(const Request& request, const struct stat& facts) {
  if (request.disposition == CREATE_NEW) return ERROR_FILE_EXISTS;
  if (S_ISDIR(facts.st_mode)) {
    const bool asFolder = (request.flags & FILE_FLAG_BACKUP_SEMANTICS) != 0 && !request.Truncates();
    return asFolder && (request.access & GENERIC_WRITE) == 0 ? 0 : ERROR_ACCESS_DENIED;
  }
  const bool changes = (request.access & (GENERIC_WRITE | DELETE)) != 0 || request.Truncates();
  return changes && IsReadOnly(facts) ? ERROR_ACCESS_DENIED : 0;
}

// A descriptor of the file, not open with errno. `fresh` makes a file that must not be there yet.
OwnedDescriptor OpenDescriptor(const Request& request, bool fresh, bool folder) {
  const bool writes = (request.access & GENERIC_WRITE) != 0 || (request.Truncates() && !folder);
  const bool reads = (request.access & GENERIC_READ) != 0 || !writes;
  int mode = O_CLOEXEC | O_NOCTTY | (writes ? (reads ? O_RDWR : O_WRONLY) : O_RDONLY);
  if ((request.flags & FILE_FLAG_WRITE_THROUGH) != 0) mode |= O_DSYNC;
  if (fresh) mode |= O_CREAT | O_EXCL;
  const bool isPrivate = (request.flags & FILE_ATTRIBUTE_TEMPORARY) != 0;
  int descriptor;
  do {
    descriptor = open(request.host.c_str(), mode, isPrivate ? 0600 : 0666);
  } while (descriptor < 0 && errno == EINTR);
  return OwnedDescriptor(descriptor);
}

HANDLE Refuse(DWORD error) {
  SetLastError(error);
  return INVALID_HANDLE_VALUE;
}

}  // namespace

HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES*, DWORD disposition,
                   DWORD flags, HANDLE) {
  Request request{{}, access, share, disposition, flags};
  if (!ToHost(path, request.host)) return INVALID_HANDLE_VALUE;
  if (disposition < CREATE_NEW || disposition > TRUNCATE_EXISTING ||
      (disposition == TRUNCATE_EXISTING && (access & GENERIC_WRITE) == 0)) {
    return Refuse(ERROR_INVALID_PARAMETER);
  }
  if ((flags & FILE_FLAG_DELETE_ON_CLOSE) != 0) request.access |= DELETE;

  // Somebody else may make or remove the file between the look and the opening; then everything is asked
  // again.
  for (int attempt = 0;; ++attempt) {
    struct stat facts;
    const bool there = stat(request.host.c_str(), &facts) == 0;
    if (there) {
      const DWORD objection = Objection(request, facts);
      if (objection != 0) return Refuse(objection);
    } else if (errno != ENOENT || !request.Creates()) {
      return Refuse(PathError(request.host, errno));
    } else if (request.host.back() == '/' || !IsCreatable(request.host)) {
      const DWORD error = PathError(request.host, ENOENT);
      return Refuse(error == ERROR_PATH_NOT_FOUND ? error : ERROR_INVALID_NAME);
    }
    OwnedDescriptor descriptor = OpenDescriptor(request, !there, there && S_ISDIR(facts.st_mode));
    if (!descriptor.IsOpen()) {
      const int error = errno;
      const bool changed = there ? error == ENOENT : error == EEXIST;
      if (changed && attempt < 100) continue;
      return Refuse(PathError(request.host, error));
    }
    if (!there && (flags & FILE_ATTRIBUTE_TEMPORARY) == 0 && IsShared(request.host)) {
      const OwnedDescriptor folder = OpenFolder(HostFolder(request.host));
      if (folder.IsOpen()) HandDown(folder.Get(), descriptor.Get());
    }
    if (fstat(descriptor.Get(), &facts) != 0) return Refuse(PathError(request.host, errno));
    std::unique_ptr<FileShare> opening = FileShare::Join(facts, request.access, share);
    if (!opening) return Refuse(ERROR_SHARING_VIOLATION);
    if (there && request.Truncates() && S_ISREG(facts.st_mode) && ftruncate(descriptor.Get(), 0) != 0) {
      return Refuse(PathError(request.host, errno));
    }
    // The mark of the new file itself; the descriptor keeps the right to write.
    if (!there && (flags & FILE_ATTRIBUTE_READONLY) != 0)
      fchmod(descriptor.Get(), facts.st_mode & 07777 & ~0222u);
    if ((flags & FILE_FLAG_DELETE_ON_CLOSE) != 0) opening->DeleteWhenUnused(AbsoluteHostPath(request.host));
    auto object = std::make_shared<FileObject>(std::move(descriptor), request.access, std::move(opening));
    const HANDLE handle = AddHandle(std::move(object));
    const bool replaced = there && (disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS);
    SetLastError(replaced ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return handle;
  }
}
