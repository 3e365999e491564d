#pragma once

// The machine-wide place for what all users share, /var/lib/qorgen, and what a folder or file that is made there gets.
//
// The administrator decides by the permissions of that one folder who shares, and what is made in it hands them down
// (shell.h states the policy). Whoever may write there may plant a link there, too: paths below it are opened folder by
// folder, and never through a link. Any thread may call.

#include <string>
#include <sys/stat.h>

#include "qorgen/platform/linux/owned_descriptor.h"

namespace qorgen::platform {

[[nodiscard]] const std::string& SharedPlace();
// For tests, before any other call: another place instead.
void SetSharedPlace(std::string host);

// Whether an absolute host path lies below the shared place.
[[nodiscard]] bool IsShared(const std::string& host);

// A descriptor of a folder, to reach its entries by; below the shared place not through a link. Not open, with errno,
// when there is none.
[[nodiscard]] OwnedDescriptor OpenFolder(const std::string& host);

// The permissions of a folder and of a file made in a shared folder that has the permissions `parent`.
[[nodiscard]] mode_t SharedFolderMode(mode_t parent);
[[nodiscard]] mode_t SharedFileMode(mode_t parent);

// Gives the folder or file behind `made`, which is new in the shared folder `parent`, its group and permissions. As far
// as the host allows: the maker isn't always of the group.
void HandDown(int parent, int made);

// As mkdir with all permissions that the process's mask leaves, and below the shared place with those handed down.
// False with errno.
[[nodiscard]] bool MakeFolder(const std::string& host);

}  // namespace qorgen::platform
