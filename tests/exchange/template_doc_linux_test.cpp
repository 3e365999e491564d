#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "qorgen/exchange/template_doc.h"

#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

// Writes in a child process whose files may have `limit` bytes; what WriteFile gave there.
int WriteUnderLimit(CQorTemplateDoc& document, const wchar_t* path, rlim_t limit) {
  const pid_t child = fork();
  if (child == 0) {
    const struct rlimit size = {limit, limit};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &size);
    _exit(document.WriteFile(path));
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

// A document that doesn't fit says so, wherever in the buffers of the stream the end comes.
TEST(TemplateDocFaults, NoSpaceLeft) {
  ScratchFolder folder;
  for (const int lines : {1, 5000}) {
    std::string text;
    for (int i = 0; i < lines; ++i) text += "督促状の本文の一行\n";
    ASSERT_TRUE(PutFile(folder.Path(L"in"), text));
    CQorTemplateDoc document;
    ASSERT_EQ(1, document.LoadTemplateFile(folder.Path(L"in")));
    const rlim_t whole = 3 + text.size() + static_cast<std::size_t>(lines);
    EXPECT_EQ(1, WriteUnderLimit(document, folder.Path(L"out"), whole));
    EXPECT_EQ(whole, GetFile(folder.Path(L"out")).size());
    EXPECT_EQ(0, WriteUnderLimit(document, folder.Path(L"out"), whole - 1));
    EXPECT_EQ(whole - 1, GetFile(folder.Path(L"out")).size());
  }
}
