#pragma once

// An open file behind a handle. Several calls may use it at once; they then share its position, as on the
// platform.

#include <memory>

#include "qorgen/platform/linux/filesystem/sharing.h"
#include "qorgen/platform/linux/handle.h"
#include "qorgen/platform/linux/owned_descriptor.h"

namespace qorgen::platform {

class FileObject final : public HandleObject {
 public:
  FileObject(OwnedDescriptor descriptor, DWORD access, std::unique_ptr<FileShare> share);

  [[nodiscard]] int Descriptor() const { return descriptor_.Get(); }
  [[nodiscard]] bool MayRead() const;
  [[nodiscard]] bool MayWrite() const;
  [[nodiscard]] FileShare& Share() const { return *share_; }

 private:
  OwnedDescriptor descriptor_;
  DWORD access_;
  std::unique_ptr<FileShare>
      share_;  // ends before the descriptor: a file that goes with its last handle goes by name
};

}  // namespace qorgen::platform
