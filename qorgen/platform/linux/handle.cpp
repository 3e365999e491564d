#include "qorgen/platform/linux/handle.h"

#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <utility>

#include "qorgen/platform/error.h"
#include "qorgen/platform/filesystem.h"

namespace qorgen::platform {
namespace {

struct HandleTable {
  std::shared_mutex mutex;
  std::unordered_map<std::uintptr_t, std::shared_ptr<HandleObject>> objects;
  std::uintptr_t next = 4;  // the platform's handles are multiples of four too; -1, "this process", is none
};

// Never destroyed: handles are closed by static objects of other modules after ours are gone.
HandleTable& Table() {
  static HandleTable& table = *new HandleTable;
  return table;
}

std::uintptr_t KeyOf(HANDLE handle) {
  return reinterpret_cast<std::uintptr_t>(handle);
}

}  // namespace

HANDLE AddHandle(std::shared_ptr<HandleObject> object) {
  HandleTable& table = Table();
  const std::unique_lock lock(table.mutex);
  const std::uintptr_t key = table.next;
  table.objects.emplace(key, std::move(object));
  table.next += 4;
  return reinterpret_cast<HANDLE>(key);
}

std::shared_ptr<HandleObject> FindHandle(HANDLE handle) {
  HandleTable& table = Table();
  const std::shared_lock lock(table.mutex);
  const auto found = table.objects.find(KeyOf(handle));
  return found == table.objects.end() ? nullptr : found->second;
}

std::shared_ptr<HandleObject> RemoveHandle(HANDLE handle) {
  HandleTable& table = Table();
  const std::unique_lock lock(table.mutex);
  const auto found = table.objects.find(KeyOf(handle));
  if (found == table.objects.end()) return nullptr;
  std::shared_ptr<HandleObject> object = std::move(found->second);
  table.objects.erase(found);
  return object;  // so that its destructor runs outside the lock
}

void internal::SetInvalidHandle() {
  SetLastError(ERROR_INVALID_HANDLE);
}

}  // namespace qorgen::platform

using namespace qorgen::platform;

HANDLE GetCurrentProcess() {
  return INVALID_HANDLE_VALUE;
}

BOOL CloseHandle(HANDLE handle) {
  if (handle == GetCurrentProcess()) return TRUE;
  const std::shared_ptr<HandleObject> object = FindHandle(handle);
  if (!object || !object->ClosesAsHandle() || !RemoveHandle(handle)) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
  }
  return TRUE;
}

BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target, DWORD, BOOL,
                     DWORD options) {
  if (target != nullptr) *target = nullptr;
  std::shared_ptr<HandleObject> object = FindHandle(source);
  if (sourceProcess != GetCurrentProcess() || targetProcess != GetCurrentProcess() || !object ||
      !object->ClosesAsHandle()) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
  }
  // Rights are those of the object: a handle with fewer can't be made.
  if (target == nullptr || options != DUPLICATE_SAME_ACCESS) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  *target = AddHandle(std::move(object));
  return TRUE;
}
