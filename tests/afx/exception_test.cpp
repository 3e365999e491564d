#include "qorgen/afx/exception.h"

#include <cerrno>

#include "qorgen/afx/message_box.h"
#include "qorgen/afx/string_resource.h"

#include "tests/support/message_box.h"
#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

// A host's own exception, on the stack and without a text.
class CSilentException : public CException {
 public:
  explicit CSilentException(int& ended) : m_ended(ended) {}
  ~CSilentException() override { ++m_ended; }
  int& m_ended;
};

std::string Message(const CException& exception) {
  wchar_t text[512];
  return exception.GetErrorMessage(text, 512) != 0 ? Utf8(text) : "(none)";
}

std::string Resource(unsigned int id) {
  return Utf8(QorFindStringResource(id));
}

}  // namespace

TEST(CException, DeleteEndsHeapObjectsOnly) {
  int ended = 0;
  CException* exception = new CSilentException(ended);
  exception->Delete();
  EXPECT_EQ(1, ended);
  CInvalidArgException local(0);
  local.Delete();
  EXPECT_NE("(none)", Message(local));
}

TEST(CException, IsCaughtByEveryClassOfItsLine) {
  EXPECT_THROWS_POINTER(AfxThrowMemoryException(), CMemoryException);
  EXPECT_THROWS_POINTER(AfxThrowNotSupportedException(), CNotSupportedException);
  EXPECT_THROWS_POINTER(AfxThrowInvalidArgException(), CSimpleException);
  EXPECT_THROWS_POINTER(AfxThrowFileException(CFileException::diskFull), CFileException);
  EXPECT_THROWS_POINTER(AfxThrowOleException(E_FAIL), COleException);
}

TEST(CException, RecordsCarryThePublishedNames) {
  int ended = 0;
  const CSilentException silent(ended);
  const CMemoryException memory(0);
  const CFileException file;
  const CNotSupportedException unsupported(0);
  const CInvalidArgException argument(0);
  const COleException ole(E_FAIL);
  const std::tuple<const CObject*, const char*, const CRuntimeClass*> rows[] = {
      {&silent, "CException", RUNTIME_CLASS(CObject)},
      {&memory, "CMemoryException", RUNTIME_CLASS(CSimpleException)},
      {&unsupported, "CNotSupportedException", RUNTIME_CLASS(CSimpleException)},
      {&argument, "CInvalidArgException", RUNTIME_CLASS(CSimpleException)},
      {&file, "CFileException", RUNTIME_CLASS(CException)},
      {&ole, "COleException", RUNTIME_CLASS(CException)}};
  for (const auto& [object, name, base] : rows) {
    EXPECT_STREQ(name, object->GetRuntimeClass()->m_lpszClassName);
    EXPECT_EQ(base, object->GetRuntimeClass()->m_pfnGetBaseClass());
    EXPECT_TRUE(object->IsKindOf(RUNTIME_CLASS(CException)));
  }
}

TEST(CException, MessagesAreCutToTheBuffer) {
  CInvalidArgException exception(0);
  wchar_t text[64] = L"former";
  unsigned int help = 99;
  EXPECT_EQ(1, exception.GetErrorMessage(text, 64, &help));
  EXPECT_EQ(0u, help);
  const CString full(text);
  text[5] = L'?';
  EXPECT_EQ(1, exception.GetErrorMessage(text, 5));
  EXPECT_TEXT(full.Left(4), text);
  EXPECT_EQ(L'?', text[5]);
  EXPECT_EQ(0, exception.GetErrorMessage(text, 0));
  EXPECT_EQ(0, exception.GetErrorMessage(nullptr, 64));
  int ended = 0;
  CSilentException silent(ended);
  EXPECT_EQ(0, silent.GetErrorMessage(text, 64, &help));
  EXPECT_TEXT(L"", text);
}

TEST(CException, ReportsItsTextOrTheGivenResource) {
  static const QorStringResource kTable[] = {{7001, L"取り込めません。", L"Cannot import."}};
  QorAddStringResources(kTable, 1);
  const MessageBoxRecorder recorder(IDRETRY);
  CInvalidArgException argument(0);
  EXPECT_EQ(IDRETRY, argument.ReportError(MB_RETRYCANCEL, 7001));
  EXPECT_EQ(Message(argument), recorder.last_text());
  EXPECT_EQ(MB_RETRYCANCEL, recorder.shown().back().type);
  int ended = 0;
  CSilentException silent(ended);
  silent.ReportError(MB_OK, 7001);
  EXPECT_EQ(Resource(7001), recorder.last_text());
  silent.ReportError(MB_OK, 7002);
  EXPECT_EQ(Resource(0xF020), recorder.last_text());
  QorRemoveStringResources(kTable);
}

TEST(CFileException, NamesTheFileForEveryCause) {
  for (int cause = CFileException::none; cause <= CFileException::endOfFile; ++cause) {
    const CFileException exception(cause, 0, L"C:\\帳簿\\%1.csv");
    const std::string message = Message(exception);
    EXPECT_NE(std::string::npos, message.find(Utf8(L"C:\\帳簿\\%1.csv"))) << message;
    for (int other = 0; other < cause; ++other)
      EXPECT_NE(message, Message(CFileException(other, 0, L"C:\\帳簿\\%1.csv")));
  }
  EXPECT_EQ(Message(CFileException(CFileException::genericException)), Message(CFileException(99)));
  EXPECT_EQ(std::string::npos, Message(CFileException(CFileException::badPath)).find("%1"));
}

TEST(CFileException, CausesComeFromSystemErrorsAndErrno) {
  using Row = std::tuple<int, int>;
  for (const auto& [number, cause] :
       Rows(Row(0, CFileException::none), Row(2, CFileException::fileNotFound),
            Row(3, CFileException::badPath), Row(4, CFileException::tooManyOpenFiles),
            Row(5, CFileException::accessDenied), Row(32, CFileException::sharingViolation),
            Row(33, CFileException::lockViolation), Row(38, CFileException::endOfFile),
            Row(112, CFileException::diskFull), Row(123, CFileException::badPath),
            Row(131, CFileException::badSeek), Row(-1, CFileException::genericException),
            Row(999999, CFileException::genericException))) {
    EXPECT_EQ(cause, CFileException::OsErrorToException(number)) << number;
  }
  const std::tuple<int, int> by_errno[] = {{0, CFileException::none},
                                           {ENOENT, CFileException::fileNotFound},
                                           {EACCES, CFileException::accessDenied},
                                           {ENOSPC, CFileException::diskFull},
                                           {EMFILE, CFileException::tooManyOpenFiles},
                                           {EIO, CFileException::hardIO},
                                           {ERANGE, CFileException::genericException}};
  for (const auto& [number, cause] : by_errno) {
    EXPECT_EQ(cause, CFileException::ErrnoToException(number)) << number;
  }
  CFileException::ThrowOsError(0, L"x");
  try {
    CFileException::ThrowOsError(5, L"C:\\a.txt");
    FAIL() << "an error number throws";
  } catch (CFileException* exception) {
    EXPECT_EQ(CFileException::accessDenied, exception->m_cause);
    EXPECT_EQ(5, exception->m_lOsError);
    EXPECT_TEXT(L"C:\\a.txt", exception->m_strFileName);
    exception->Delete();
  }
  EXPECT_THROWS_POINTER(CFileException::ThrowErrno(ENOENT), CFileException);
}

TEST(COleException, NamesItsCode) {
  const COleException denied(static_cast<HRESULT>(0x80070005u));
  EXPECT_NE("(none)", Message(denied));
  EXPECT_EQ(std::string::npos, Message(denied).find('\n'));
  EXPECT_NE(std::string::npos, Message(COleException(static_cast<HRESULT>(0x8ABCDEF0u))).find("8ABCDEF0"));
  const CMemoryException memory(0);
  const CInvalidArgException argument(0);
  EXPECT_EQ(denied.m_sc, COleException::Process(&denied));
  EXPECT_EQ(E_OUTOFMEMORY, COleException::Process(&memory));
  EXPECT_EQ(E_UNEXPECTED, COleException::Process(&argument));
  EXPECT_EQ(E_UNEXPECTED, COleException::Process(nullptr));
}

TEST(StringResources, TheTableAddedLastAnswers) {
  static const QorStringResource kFirst[] = {{7001, L"一", nullptr}, {7002, L"二", nullptr}};
  static const QorStringResource kSecond[] = {{7001, nullptr, L"one"}, {0xF020, L"無", L"none"}};
  const std::string own = Resource(0xF020);
  QorAddStringResources(nullptr, 3);
  QorAddStringResources(kFirst, 0);
  EXPECT_EQ(nullptr, QorFindStringResource(7001));
  QorAddStringResources(kFirst, 2);
  QorAddStringResources(kSecond, 2);
  EXPECT_EQ("one", Resource(7001));
  EXPECT_NE(own, Resource(0xF020));
  QorRemoveStringResources(kSecond);
  EXPECT_EQ(own, Resource(0xF020));
  QorRemoveStringResources(kFirst);
  QorRemoveStringResources(kFirst);
  EXPECT_EQ(nullptr, QorFindStringResource(7002));
}

TEST(AfxMessageBox, AsksTheHandlerAndGivesTheFormerOneBack) {
  {
    const MessageBoxRecorder recorder(IDNO);
    EXPECT_EQ(IDNO, AfxMessageBox(L"続けますか？", MB_YESNO | MB_ICONQUESTION, 12));
    EXPECT_EQ(Utf8(L"続けますか？"), recorder.last_text());
    EXPECT_EQ(12u, recorder.shown().back().help_context);
    const wchar_t* none = nullptr;
    AfxMessageBox(none);
    EXPECT_EQ("", recorder.last_text());
    AfxMessageBox(0xF020u);
    EXPECT_EQ(Resource(0xF020), recorder.last_text());
  }
  EXPECT_EQ(nullptr, QorSetMessageBoxHandler(nullptr));
}
