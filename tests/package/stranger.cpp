// A stranger's program against the installed package. It tests what only a client can see: the umbrella
// header, the exported classes, an exception thrown inside the library and caught here, a block given back.

#include <cstdio>
#include <qorgen/qorgen.h>

int main() {
  wchar_t* text = CQorNumUtil::FormatString(-1234567, 0x21u, nullptr, 0, L' ');
  const bool grouped = text != nullptr && CString(text) == L"△1,234,567";
  QorFree(text);

  bool caught = false;
  try {
    CQorOsException::Throw(2);
  } catch (CQorException* error) {
    caught = error->IsKindOf(RUNTIME_CLASS(CQorOsException)) != 0;
    error->Delete();
  }

  bool missing = false;
  try {
    CQorCSVFile file(L"C:\\no\\such\\folder\\file.csv", CFile::modeRead);
  } catch (CFileException* error) {
    missing = true;
    error->Delete();
  }

  CQorDate date;
  const bool era = CQorDateUtil::GetDateFromImpStr(L"05/03/R06", date) == 1 && date.GetWareki() == 6;
  std::printf("grouped %d, caught %d, missing %d, era %d\n", grouped, caught, missing, era);
  return grouped && caught && missing && era ? 0 : 1;
}
