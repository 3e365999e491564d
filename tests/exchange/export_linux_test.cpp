// Targets that take no more, where the failure shows at once or only as the file is closed; and memory.

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

#include "qorgen/exchange/export_base.h"
#include "qorgen/platform/crt.h"

#include "tests/support/own_temp_folder.h"
#include "tests/support/testing.h"

namespace qorgen::tests {
namespace {

constexpr CQorExportInfo kColumn[] = {0};

class Numbers : public CQorExportBase {
 public:
  explicit Numbers(long rows) : end_(rows) { SetExportInfo(kColumn, 1); }
  bool ended = false;

 protected:
  void GetExportField(CQorExportInfo, long at, CString& text, CSVMGR_QUOTES&, int&) override {
    wchar_t digits[32];
    text = _itow(static_cast<int>(at), digits, 10);
  }
  int IsExportEnd(long at) override { return at == end_ ? 1 : 0; }
  void EndProgress() override { ended = true; }

 private:
  long end_;
};

TEST(ExportFaults, ATargetThatTakesNoMoreIsRemoved) {
  OwnTempFolder folder;
  const auto former_action = std::signal(SIGXFSZ, SIG_IGN);
  rlimit former{};
  getrlimit(RLIMIT_FSIZE, &former);
  for (const long rows : {3L, 100'000L}) {
    for (const int ol : {0, 1}) {
      const rlimit small{rows == 3 ? 4u : 100'000u, former.rlim_max};
      setrlimit(RLIMIT_FSIZE, &small);
      Numbers numbers(rows);
      EXPECT_EQ(0, numbers.Write(folder.Path(L"a\u00E9.csv"), nullptr, ol));
      EXPECT_TRUE(numbers.ended);
      EXPECT_EQ(0, Numbers(rows).WriteTableau(folder.Path(L"a\u00E9.csv")));
      setrlimit(RLIMIT_FSIZE, &former);
      EXPECT_FALSE(Exists(folder.Path(L"a\u00E9.csv")));
    }
    // A device stays where it is, and so does a link to one.
    EXPECT_EQ(0, Numbers(rows).Write(L"/dev/full", nullptr, 0));
    EXPECT_EQ(0, Numbers(rows).WriteTableau(L"/dev/full"));
    EXPECT_EQ(1, Numbers(rows).Write(L"/dev/null", nullptr, 0));
    EXPECT_TRUE(Exists(L"/dev/full"));
    EXPECT_TRUE(Exists(L"/dev/null"));
  }
  std::signal(SIGXFSZ, former_action);
}

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST(ExportFaults, MemoryDoesNotGrowWithTheRows) {
  EXPECT_EQ(1, Numbers(1000).Write(L"/dev/null", nullptr, 0));
  const long before = PeakKilobytes();
  EXPECT_EQ(1, Numbers(500'000).Write(L"/dev/null", nullptr, 0));
  EXPECT_LT(PeakKilobytes() - before, 1024);
}

}  // namespace
}  // namespace qorgen::tests
