// A text file in another encoding as one process. Usage: qorgen_bench_recode utf8|932 SOURCE TARGET

#include <cstring>

#include "qorgen/qorgen.h"

namespace {

CString PathOf(const char* text) {
  CString path;
  for (; *text != 0; ++text) path.AppendChar(static_cast<unsigned char>(*text));
  return path;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const auto convert =
      std::strcmp(argv[1], "utf8") == 0 ? CQorFileUtil::SJisToUtf8 : CQorFileUtil::Utf8ToSJis;
  return convert(PathOf(argv[2]), PathOf(argv[3])) ? 0 : 1;
}
