#pragma once

// Wine in place of Windows: where its answer is known to differ from the published one, a test says so with
// this.

namespace qorgen::tests {

// Whether the system's interface is Wine's.
bool UnderWine();

// For what the published documentation says and Wine does not do: true when `holds`, and under Wine when it
// doesn't, so that the day when Wine does it shows.
bool HoldsExceptOnWine(bool holds);

// The same for a row of a table, which says whether Wine keeps it.
inline bool AsPublished(bool holds, bool also_on_wine) {
  return also_on_wine ? holds : HoldsExceptOnWine(holds);
}

}  // namespace qorgen::tests
