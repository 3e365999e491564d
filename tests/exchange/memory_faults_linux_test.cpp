// Every allocation of an export fails once: nothing stays open, and nothing is closed twice.

#include "qorgen/exchange/export_base.h"

#include "tests/support/failing_memory.h"
#include "tests/support/own_temp_folder.h"
#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

constexpr CQorExportInfo kColumns[20] = {};

class Rows : public CQorExportBase {
 public:
  Rows() { SetExportInfo(kColumns, 20); }

 protected:
  void GetExportField(CQorExportInfo, long, CString& text, CSVMGR_QUOTES&, int&) override { text = L"x"; }
  int IsExportEnd(long at) override { return at == 3 ? 1 : 0; }
};

TEST(ExportFaults, AllocationsThatFail) {
  OwnTempFolder folder;
  const CString path = folder.Path(L"a.csv");
  const long before = OpenDescriptors();
  for (const int form : {0, 1, 2}) {
    const auto step = [&] {
      Rows rows;
      form == 2 ? rows.WriteTableau(path) : rows.Write(path, nullptr, form);
    };
    int allocations = 0;
    while (!Completes(step, allocations) && ++allocations < 1000) {
    }
    EXPECT_TRUE(allocations > 0 && allocations < 1000) << form;
    EXPECT_EQ(before, OpenDescriptors()) << form;
  }
}

}  // namespace
