#pragma once

// An open file behind a handle. Several calls may use it at once; they then share its position, as on the
// platform.

#include <memory>

#include "qorgen/platform/linux/filesystem/sharing.h"
#include "qorgen/platform/linux/handle.h"

namespace qorgen::platform {

class FileObject final : public HandleObject {
 public:
  // Takes over `descriptor`.
  FileObject(int descriptor, DWORD access, std::unique_ptr<FileShare> share);
  ~FileObject() override;

  [[nodiscard]] int Descriptor() const { return descriptor_; }
  [[nodiscard]] bool MayRead() const;
  [[nodiscard]] bool MayWrite() const;
  [[nodiscard]] FileShare& Share() const { return *share_; }

 private:
  int descriptor_;
  DWORD access_;
  std::unique_ptr<FileShare> share_;
};

}  // namespace qorgen::platform
