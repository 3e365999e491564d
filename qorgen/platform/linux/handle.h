#pragma once

// What stands behind a HANDLE on this host. Every kind of object (file, search, event, timer, thread, key
// ...) derives from HandleObject and joins the one table here. A handle is a number that is never given out
// twice, so that a closed or invented one is always recognised. Any thread may call; an object lives on while
// a call is still using it.

#include <memory>

#include "qorgen/platform/types.h"

namespace qorgen::platform {

class HandleObject {
 public:
  HandleObject() = default;
  HandleObject(const HandleObject&) = delete;
  HandleObject& operator=(const HandleObject&) = delete;
  // Gives the resource back; runs when the last handle is closed and the last call is out.
  virtual ~HandleObject() = default;
  // False for objects that have a closing call of their own (searches, registry keys).
  [[nodiscard]] virtual bool ClosesAsHandle() const { return true; }
};

// A new handle of `object`; an object may have several.
[[nodiscard]] HANDLE AddHandle(std::shared_ptr<HandleObject> object);

// The object behind `handle`, null if there is none.
[[nodiscard]] std::shared_ptr<HandleObject> FindHandle(HANDLE handle);

// Takes the handle out of the table and returns its object; null if there is none.
std::shared_ptr<HandleObject> RemoveHandle(HANDLE handle);

// The object behind `handle` when it is of kind T; else null, with the last error ERROR_INVALID_HANDLE.
template <class T>
[[nodiscard]] std::shared_ptr<T> ObjectOf(HANDLE handle);

namespace internal {
void SetInvalidHandle();
}

template <class T>
std::shared_ptr<T> ObjectOf(HANDLE handle) {
  std::shared_ptr<T> object = std::dynamic_pointer_cast<T>(FindHandle(handle));
  if (!object) internal::SetInvalidHandle();
  return object;
}

}  // namespace qorgen::platform
