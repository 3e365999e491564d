// The entry of a program that speaks UTF-8 to the console as it does on Linux: arguments arrive in UTF-8, and
// what it prints leaves as the bytes it wrote, LF included. The program's own `main` is compiled under the
// name `program_main`.

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <vector>

#include "qorgen/platform/types.h"

int program_main(int argc, char** argv);

extern "C" int wmain(int argc, wchar_t** argv) {
  std::vector<std::string> texts;
  for (int i = 0; i < argc; ++i) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, argv[i], -1, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, argv[i], -1, text.data(), size, nullptr, nullptr);
    texts.push_back(std::move(text));
  }
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);

  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  // A console of the user's keeps its code page for the program after this one.
  const UINT former = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
  int status = program_main(argc, pointers.data());
  // Output that is lost here is lost without a word from the program.
  if ((std::fflush(nullptr) != 0 || std::ferror(stdout) != 0) && status == 0) {
    std::fprintf(stderr, "the output could not be written\n");
    status = 1;
  }
  if (former != 0) SetConsoleOutputCP(former);
  return status;
}
