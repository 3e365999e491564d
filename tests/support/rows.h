#pragma once

// The rows of a table of cases, for lists too long for one line a row.

#include <array>

namespace qorgen::tests {

template <typename Row, typename... More>
std::array<Row, 1 + sizeof...(More)> Rows(const Row& first, const More&... more) {
  return {first, more...};
}

}  // namespace qorgen::tests
