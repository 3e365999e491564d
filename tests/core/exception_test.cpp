#include "qorgen/core/exception.h"

#include <algorithm>

#include "qorgen/afx/string_resource.h"
#include "qorgen/core/error_text.h"
#include "qorgen/platform/error.h"

#include "tests/support/message_box.h"
#include "tests/support/testing.h"

using namespace qorgen::tests;

TEST(CQorException, RecordsFormOneLine) {
  const CQorException plain;
  const CQorOsException system(5);
  EXPECT_STREQ("CQorException", plain.GetRuntimeClass()->m_lpszClassName);
  EXPECT_STREQ("CQorOsException", system.GetRuntimeClass()->m_lpszClassName);
  EXPECT_EQ(CQorOsException::GetThisClass(), system.GetRuntimeClass());
  EXPECT_EQ(RUNTIME_CLASS(CQorException), CQorOsException::_GetBaseClass());
  EXPECT_EQ(RUNTIME_CLASS(CException), CQorException::_GetBaseClass());
}

TEST(CQorException, ReportsItsTextOrTheResource) {
  static const QorStringResource kTable[] = {{7201, L"処理できません。", L"Cannot continue."}};
  QorAddStringResources(kTable, 1);
  const MessageBoxRecorder recorder(IDCANCEL);
  CQorException exception;
  EXPECT_EQ(IDCANCEL, exception.ReportError(MB_OKCANCEL, 7201));
  EXPECT_EQ(Utf8(QorFindStringResource(7201)), recorder.last_text());
  EXPECT_EQ(MB_OKCANCEL, recorder.shown().back().type);
  exception.ReportError();
  EXPECT_EQ(Utf8(QorFindStringResource(0xF020)), recorder.last_text());
  EXPECT_EQ(IDCANCEL, CQorOsException(2).ReportError(MB_ICONSTOP, 7201));
  EXPECT_EQ(Utf8(CGenUtil::FormatLastErrorMessage(nullptr, 2, nullptr)), recorder.last_text());
  QorRemoveStringResources(kTable);
}

TEST(CQorException, ReportsTextsOfUpTo1023Units) {
  class CLongTextException : public CQorException {
   public:
    int GetErrorMessage(wchar_t* text, unsigned int room, unsigned int* help) override {
      std::fill_n(text, room - 1, L'x');
      text[room - 1] = 0;
      *help = 42;
      return 1;
    }
    using CQorException::GetErrorMessage;
  };
  const MessageBoxRecorder recorder(IDOK);
  CLongTextException exception;
  EXPECT_EQ(IDOK, exception.ReportError());
  EXPECT_EQ(std::string(1023, 'x'), recorder.last_text());
  EXPECT_EQ(42u, recorder.shown().back().help_context);
}

TEST(CQorOsException, KeepsTheErrorOfItsMaking) {
  SetLastError(112);
  const CQorOsException exception;
  SetLastError(5);
  EXPECT_EQ(112u, exception.m_dwError);
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(nullptr, 112, nullptr), exception.GetErrorMessage());
  EXPECT_EQ(0x80004005u, CQorOsException(static_cast<unsigned long>(static_cast<long>(E_FAIL))).m_dwError);
  SetLastError(0);
  const CQorOsException nothing(0);
  EXPECT_EQ(0u, nothing.m_dwError);
  SetLastError(3);
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(nullptr, 3, nullptr), nothing.GetErrorMessage());
  EXPECT_TEXT(CGenUtil::FormatLastErrorMessage(nullptr, 87, nullptr), CQorOsException::GetErrorMessage(87ul));
}

TEST(CQorOsException, TheBufferHoldsTheWholeTextOrNothing) {
  CQorOsException exception(5);
  const CString text = exception.GetErrorMessage();
  const auto length = static_cast<unsigned int>(text.GetLength());
  unsigned int help = 77;
  for (const unsigned int room : {0u, 1u, length - 1, length, length + 1, length + 5}) {
    // A text that fits is followed by zeros to the end of the room, and nothing behind it is touched.
    std::vector<wchar_t> expected(length + 8, L'#');
    if (room > length) std::fill_n(expected.begin(), room, L'\0');
    if (room > length) std::copy_n(text.GetString(), length, expected.begin());
    std::vector<wchar_t> buffer(length + 8, L'#');
    EXPECT_EQ(room > length ? 1 : 0, exception.GetErrorMessage(buffer.data(), room, &help)) << room;
    EXPECT_TRUE(expected == buffer) << room;
  }
  EXPECT_EQ(77u, help);
  EXPECT_EQ(0, exception.GetErrorMessage(nullptr, 1000, nullptr));
  // Through the root class, too.
  wchar_t buffer[1024];
  EXPECT_EQ(1, static_cast<const CException&>(exception).GetErrorMessage(buffer, 1024));
  EXPECT_TEXT(text, buffer);
}

TEST(CQorOsException, IsThrownByPointer) {
  EXPECT_THROWS_POINTER(CQorOsException::Throw(5), CException);
  SetLastError(32);
  try {
    CQorOsException::Throw(0);
  } catch (CQorOsException* exception) {
    EXPECT_EQ(32u, exception->m_dwError);
    exception->Delete();
  }
}
