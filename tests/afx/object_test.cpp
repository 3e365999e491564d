#include "qorgen/afx/object.h"

#include <cstring>

#include "qorgen/afx/exception.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

class CLedger : public CObject {
  DECLARE_DYNCREATE(CLedger)
};
class CMainLedger : public CLedger {
  DECLARE_DYNAMIC(CMainLedger)
};
IMPLEMENT_DYNCREATE(CLedger, CObject)
IMPLEMENT_DYNAMIC(CMainLedger, CLedger)

// The slot of a virtual function in the table that both compilers of this library use: a pointer to a virtual
// member holds 1 more than the slot's offset.
template <typename Member>
std::ptrdiff_t Slot(Member member) {
  std::ptrdiff_t value = 0;
  static_assert(sizeof member >= sizeof value);
  std::memcpy(&value, &member, sizeof value);
  return (value - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

}  // namespace

TEST(CObject, RecordsDescribeTheClass) {
  const CMainLedger ledger;
  const CRuntimeClass* record = ledger.GetRuntimeClass();
  EXPECT_EQ(RUNTIME_CLASS(CMainLedger), record);
  EXPECT_STREQ("CMainLedger", record->m_lpszClassName);
  EXPECT_EQ(static_cast<int>(sizeof(CMainLedger)), record->m_nObjectSize);
  EXPECT_EQ(0xFFFFu, record->m_wSchema);
  EXPECT_EQ(nullptr, record->CreateObject());
  EXPECT_EQ(RUNTIME_CLASS(CLedger), record->m_pfnGetBaseClass());
  EXPECT_EQ(nullptr, RUNTIME_CLASS(CObject)->m_pfnGetBaseClass());
  EXPECT_FALSE(ledger.IsSerializable());
}

TEST(CObject, KnowsItsKind) {
  CMainLedger ledger;
  EXPECT_TRUE(ledger.IsKindOf(RUNTIME_CLASS(CMainLedger)));
  EXPECT_TRUE(ledger.IsKindOf(RUNTIME_CLASS(CLedger)));
  EXPECT_TRUE(ledger.IsKindOf(RUNTIME_CLASS(CObject)));
  EXPECT_FALSE(ledger.IsKindOf(RUNTIME_CLASS(CException)));
  EXPECT_FALSE(ledger.IsKindOf(nullptr));
  EXPECT_FALSE(RUNTIME_CLASS(CLedger)->IsDerivedFrom(RUNTIME_CLASS(CMainLedger)));
  CObject* made = RUNTIME_CLASS(CLedger)->CreateObject();
  ASSERT_NE(nullptr, made);
  EXPECT_NE(nullptr, DYNAMIC_DOWNCAST(CLedger, made));
  EXPECT_EQ(nullptr, DYNAMIC_DOWNCAST(CMainLedger, made));
  delete made;
  EXPECT_EQ(nullptr, DYNAMIC_DOWNCAST(CLedger, static_cast<CObject*>(nullptr)));
}

TEST(CObject, VirtualOperationsStandInThePublishedOrder) {
  using Plain = int (CException::*)(wchar_t*, unsigned int, unsigned int*);
  using Const = int (CException::*)(wchar_t*, unsigned int, unsigned int*) const;
  EXPECT_EQ(0, Slot(&CObject::GetRuntimeClass));
  // The destructor takes two slots here, a complete one and a deleting one.
  EXPECT_EQ(3, Slot(&CObject::Serialize));
  EXPECT_EQ(4, Slot(&CObject::AssertValid));
  EXPECT_EQ(5, Slot(&CObject::Dump));
  EXPECT_EQ(6, Slot(static_cast<Plain>(&CException::GetErrorMessage)));
  EXPECT_EQ(7, Slot(static_cast<Const>(&CException::GetErrorMessage)));
  EXPECT_EQ(8, Slot(&CException::ReportError));
}
