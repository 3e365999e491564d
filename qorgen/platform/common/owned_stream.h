#pragma once

// A stream that is closed when its owner ends. Who must know that everything was written releases it and asks fclose.

#include <cstdio>
#include <memory>

namespace qorgen::platform {

struct StreamCloser {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using OwnedStream = std::unique_ptr<std::FILE, StreamCloser>;

}  // namespace qorgen::platform
