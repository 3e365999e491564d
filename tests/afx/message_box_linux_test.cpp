
#include "qorgen/afx/message_box.h"
#include "qorgen/platform/message_box.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

TEST(MessageBoxWithoutScreen, AnswersTheDefaultButton) {
  using Row = std::tuple<unsigned int, int>;
  for (const auto& [type, answer] :
       Rows(Row(MB_OK, IDOK), Row(MB_OK | MB_DEFBUTTON2, IDOK), Row(MB_OKCANCEL, IDOK),
            Row(MB_OKCANCEL | MB_DEFBUTTON2, IDCANCEL), Row(MB_ABORTRETRYIGNORE, IDABORT),
            Row(MB_ABORTRETRYIGNORE | MB_DEFBUTTON3, IDIGNORE), Row(MB_YESNOCANCEL, IDYES),
            Row(MB_YESNOCANCEL | MB_DEFBUTTON3, IDCANCEL), Row(MB_YESNO | MB_ICONQUESTION, IDYES),
            Row(MB_YESNO | MB_DEFBUTTON2, IDNO), Row(MB_YESNO | MB_DEFBUTTON3, IDYES),
            Row(MB_RETRYCANCEL | MB_DEFBUTTON2, IDCANCEL), Row(MB_CANCELTRYCONTINUE, IDCANCEL),
            Row(MB_CANCELTRYCONTINUE | MB_DEFBUTTON2, IDTRYAGAIN), Row(0xF, 0))) {
    EXPECT_EQ(answer, MessageBoxW(nullptr, L"", nullptr, type)) << std::hex << type;
  }
}

TEST(MessageBoxWithoutScreen, WritesUtf8ToStandardError) {
  testing::internal::CaptureStderr();
  AfxMessageBox(L"残高が合いません。\r\n確認しますか？", MB_YESNO);
  MessageBoxW(nullptr, L"\xD842\xDFB7 \xD842.\n", L"caption", MB_OK);
  EXPECT_EQ(
      "\xE6\xAE\x8B\xE9\xAB\x98\xE3\x81\x8C\xE5\x90\x88\xE3\x81\x84\xE3\x81\xBE\xE3\x81\x9B\xE3\x82\x93\xE3"
      "\x80\x82\n"
      "\xE7\xA2\xBA\xE8\xAA\x8D\xE3\x81\x97\xE3\x81\xBE\xE3\x81\x99\xE3\x81\x8B\xEF\xBC\x9F\n"
      "caption\n\xF0\xA0\xAE\xB7 \xEF\xBF\xBD.\n",
      testing::internal::GetCapturedStderr());
}
