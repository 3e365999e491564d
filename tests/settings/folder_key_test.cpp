#include "qorgen/settings/folder_key.h"

#include <atomic>
#include <cstring>
#include <thread>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/memory.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/filesystem.h"

#include "tests/settings/test_key.h"
#include "tests/support/testing.h"

using namespace qorgen::tests;

namespace {

using namespace std::string_literals;
using Text = const wchar_t*;

// The bytes of a block as text.
std::string Bytes(const void* data, std::size_t size) {
  return data != nullptr ? std::string(static_cast<const char*>(data), size) : "(none)";
}

unsigned char* Data(const char* bytes) {
  return reinterpret_cast<unsigned char*>(const_cast<char*>(bytes));
}

class RegFileKeyTest : public KeyTest {
 protected:
  // The names of a list, a space behind each; "(null)" for none.
  static std::string Joined(Text* names, int count) {
    std::string all = names == nullptr ? "(null)" : "";
    for (int i = 0; names != nullptr && i < count; ++i) all += Utf8(names[i]) + " ";
    return all;
  }
  std::string Values(Text sub_key) {
    TestKey key(In(sub_key));
    int count = -1;
    Text* names = key.GetValueNames(&count);
    return Joined(names, count);
  }
};

TEST_F(RegFileKeyTest, RootsLieInTheCommonDocumentsFolder) {
  const CString documents = CQorFileUtil::GetCommonDocumentPath();
  ASSERT_FALSE(documents.IsEmpty());
  const bool there = Exists(documents + L"\\KeyVault");
  EXPECT_TEXT(documents + L"\\KeyVault\\LM", CQorRegFileKey(HKEY_LOCAL_MACHINE).GetKeyName());
  EXPECT_TEXT(documents + L"\\KeyVault\\CU", CQorRegFileKey(HKEY_CURRENT_USER).GetKeyName());
  EXPECT_TEXT(documents + L"\\", CQorRegFileKey(nullptr).GetKeyName());
  EXPECT_EQ(there, Exists(documents + L"\\KeyVault"));
}

TEST_F(RegFileKeyTest, BytesOnDisk) {
  const std::pair<int, std::string> numbers[] = {
      {-1, "\xFF\xFE\x2D\0\x31\0"s}, {0, Wide("0")}, {-2147483647 - 1, Wide("-2147483648")}};
  for (const auto& [value, bytes] : numbers) {
    EXPECT_EQ(1, m_key.SetLong(L"n", value) & m_key.SetInt(L"i", value));
    EXPECT_EQ(bytes + bytes, Get(L"n.dw") + Get(L"i.dw"));
    EXPECT_EQ(value, m_key.GetInt(L"n", 5));
  }
  const std::tuple<Text, std::string, Text> texts[] = {
      {L"", Wide(""), L""},
      {nullptr, Wide(""), L""},
      {L"円\xD83D\xDE00\xD800", "\xFF\xFE\x86\x51\x3D\xD8\x00\xDE\x00\xD8"s, L"円\xD83D\xDE00\xD800"},
      {L"1\n2\n", Wide("1\r\n2\r\n"), L"1"},
      {L"\n2", Wide("\r\n2"), L""}};
  for (const auto& [value, bytes, read] : texts) {
    EXPECT_EQ(1, m_key.SetString(L"t", value));
    EXPECT_EQ(bytes, Get(L"t.sz"));
    EXPECT_TEXT(read, m_key.GetString(L"t", L"default"));
  }
  EXPECT_EQ(1, m_key.SetBinary(L"b", Data("\xFF\xFE\r\n\n\0\x1A"), 7));
  EXPECT_EQ("\xFF\xFE\r\n\n\0\x1A"s, Get(L"b.dat"));
}

TEST_F(RegFileKeyTest, NamesLoseFolderAndLastExtension) {
  const std::pair<Text, Text> rows[] = {{nullptr, L"_ROOT.dw"}, {L"a.b", L"a.dw"},  {L"a.b.c", L"a.b.dw"},
                                        {L"x\\y", L"y.dw"},     {L"x/z.", L"z.dw"}, {L"C:\\w", L"w.dw"},
                                        {L"部数", L"部数.dw"},  {L"", L".dw"},      {L"d.dw", L"d.dw"},
                                        {L"a b.c", L"a b.dw"}};
  for (const auto& [name, file] : rows) {
    EXPECT_EQ(1, m_key.SetLong(name, 7)) << Utf8(name);
    EXPECT_EQ(Wide("7"), Get(file)) << Utf8(file);
    EXPECT_EQ(1, CQorFileUtil::DeleteFileW(In(file)));
  }
  const std::pair<unsigned long, Text> types[] = {
      {REG_SZ, L"s.sz"}, {REG_BINARY, L"s.dat"}, {REG_DWORD, L"s.dw"}, {2, L"s"}, {0, L"s"}};
  for (const auto& [type, file] : types) {
    EXPECT_TEXT(CString(L"C:\\k\\") + file, m_key.GetValuePath(L"s", type, L"C:\\k"));
    // Its own result may be handed back.
    EXPECT_TEXT(In(file), m_key.GetValuePath(m_key.GetValuePath(L"s", REG_DWORD, nullptr), type, nullptr));
  }
}

TEST_F(RegFileKeyTest, DefaultsAreStoredButNotByTheFormWithABuffer) {
  EXPECT_EQ(12, m_key.GetLong(L"部数", 12));
  EXPECT_EQ(12, m_key.GetLong(L"部数", 13));
  wchar_t buffer[] = L"####";
  EXPECT_EQ(0, m_key.GetString(L"t", buffer, 4, nullptr));
  EXPECT_EQ(0, m_key.GetString(L"t", nullptr, 4, L"x"));
  EXPECT_TEXT(L"####", buffer);
  EXPECT_EQ(1, m_key.GetString(L"t", buffer, 4, L"既定"));
  EXPECT_EQ(nullptr, m_key.GetString(L"t", nullptr));
  EXPECT_EQ("部数.dw ", Values(L""));
  // The second default is the key's own text.
  EXPECT_TEXT(L"既定", m_key.GetString(L"u", m_key.GetString(L"t", L"既定")));
  EXPECT_EQ("\xFF\xFE\xE2\x65\x9A\x5B", Get(L"t.sz"));
  EXPECT_EQ(Get(L"t.sz"), Get(L"u.sz"));
  // What fills the buffer has no terminator; what doesn't is followed by zeros.
  m_key.SetString(L"t", L"ab");
  const std::pair<int, Text> rows[] = {{4, L"ab\0\0"}, {3, L"ab\0#"}, {2, L"ab##"},
                                       {1, L"a###"},   {0, L"####"},  {-2147483647 - 1, L"####"}};
  for (const auto& [size, expected] : rows) {
    for (Text name : {L"t", L"missing"}) {
      wchar_t filled[] = L"####";
      EXPECT_EQ(1, m_key.GetString(name, filled, size, L"ab"));
      EXPECT_EQ(Bytes(expected, 8), Bytes(filled, 8)) << size;
    }
  }
}

TEST_F(RegFileKeyTest, DamagedFilesAreReadAsFarAsTheyGo) {
  const std::string many(100'000, '7');
  const std::tuple<std::string, long, std::string> rows[] = {
      {"", 0, ""},
      {Wide(""), 0, ""},
      {"\xFF", 0, ""},
      {Wide("42") + "5", 42, "42"},
      {Wide("42").substr(2), 42, "42"},
      {"\xEF\xBB\xBF\x34\x32", 42, "42"},
      {Wide(" \t "), 0, " \t "},
      {Wide(" 42x \r\n1"), 42, " 42x "},
      {Wide("x1"), 0, "x1"},
      {Wide("4294967297"), 2147483647, "4294967297"},
      {Wide("-99999999999999999999"), -2147483647 - 1, "-99999999999999999999"},
      {Wide("\r\n42"), 0, ""},
      {Wide("4") + "\x1A\0"s + Wide("2").substr(2), 4, "4"},
      {Wide(many), 2147483647, many}};
  for (const auto& [bytes, number, text] : rows) {
    SCOPED_TRACE(testing::PrintToString(bytes.substr(0, 20)));
    for (Text name : {L"v.dw", L"v.sz"}) Put(name, bytes);
    EXPECT_EQ(number, m_key.GetLong(L"v", 5));
    EXPECT_EQ(text, Utf8(m_key.GetString(L"v", L"default")));
    wchar_t buffer[] = L"###";
    EXPECT_EQ(1, m_key.GetString(L"v", buffer, 3, L"d"));
    EXPECT_EQ(text.substr(0, 3), Utf8(CString(buffer, 3).GetString()));
    EXPECT_EQ(bytes, Get(L"v.dw"));
  }
  // A file with the mark of UTF-16BE is no text.
  Put(L"v.sz", "\xFE\xFF\0x"s);
  EXPECT_TEXT(L"", m_key.GetString(L"v", L"default"));
}

TEST_F(RegFileKeyTest, FoldersNamedAsValuesAndFilesAsKeys) {
  for (Text name : {L"a.dw", L"a.sz", L"a.dat"}) PutFolder(name);
  wchar_t buffer[] = L"##";
  int size = 9;
  EXPECT_EQ(0, m_key.GetLong(L"a", 5));
  EXPECT_TEXT(L"", m_key.GetString(L"a", L"default"));
  EXPECT_EQ(nullptr, m_key.GetBinary(L"a", &size));
  EXPECT_EQ(0, size);
  EXPECT_EQ(0, m_key.GetString(L"a", buffer, 3, L"x") | m_key.GetBinary(L"a", buffer, 4));
  EXPECT_TEXT(L"##", buffer);
  EXPECT_EQ(0, m_key.SetLong(L"a", 1) | m_key.SetString(L"a", L"x") | m_key.SetBinary(L"a", buffer, 4));
  EXPECT_EQ(0u, m_key.GetValueType(L"a", nullptr));
  Put(L"file", "");
  TestKey below(In(L"file"));
  EXPECT_EQ(0, below.SetLong(L"n", 1));
  EXPECT_EQ(3, below.GetLong(L"n", 3));
}

TEST_F(RegFileKeyTest, BinaryValues) {
  int size = 9;
  char buffer[] = "####";
  EXPECT_EQ(0, m_key.GetBinary(L"b", buffer, 4));
  EXPECT_EQ(nullptr, m_key.GetBinary(L"b", &size));
  EXPECT_EQ(9, size);
  EXPECT_EQ(1, m_key.SetBinary(L"b", Data("123"), 3));
  EXPECT_EQ("123", Bytes(m_key.m_binary.get(), 3));
  EXPECT_EQ(0, m_key.m_binarySize);
  for (const auto& [room, expected] : {std::pair{-1, "####"}, {0, "####"}, {2, "12##"}, {4, "123#"}}) {
    EXPECT_EQ(1, m_key.GetBinary(L"b", std::strcpy(buffer, "####"), room));
    EXPECT_STREQ(expected, buffer);
  }
  EXPECT_EQ(0, m_key.GetBinary(L"b", static_cast<void*>(nullptr), 4));
  // The key's own bytes as source, and as target.
  EXPECT_EQ(1, m_key.SetBinary(L"c", static_cast<char*>(m_key.GetBinary(L"b", nullptr)) + 1, 2));
  EXPECT_EQ("23", Get(L"c.dat"));
  EXPECT_EQ(1, m_key.GetBinary(L"b", m_key.GetBinary(L"c", nullptr), 2));
  EXPECT_EQ(0, m_key.SetBinary(L"b", buffer, -1) | m_key.SetBinary(L"b", nullptr, 1));
  EXPECT_EQ("123", Get(L"b.dat"));
  EXPECT_EQ(1, m_key.SetBinary(L"b", nullptr, 0));
  EXPECT_EQ("", Get(L"b.dat"));
  EXPECT_NE(nullptr, m_key.GetBinary(L"b", &size));
  EXPECT_EQ(0, size);
}

TEST_F(RegFileKeyTest, TypesAndDeleting) {
  const std::pair<Text, unsigned long> rows[] = {{L"n.dw", 4},  {L"N2.DW", 4}, {L"s.sz", 1},
                                                 {L"b.dat", 3}, {L"o.txt", 0}, {L"bare", 0}};
  for (const auto& [file, type] : rows) {
    Put(file, "");
    EXPECT_EQ(type, TestKey(L"C:\\none").GetValueType(file, m_key.GetKeyName())) << Utf8(file);
    EXPECT_EQ(type != 0, m_key.IsExistValue(file) == 1) << Utf8(file);
  }
  m_key.SetString(nullptr, L"");
  EXPECT_EQ(1u, m_key.GetValueType(nullptr, nullptr));
  m_key.SetString(L"n", L"");  // the first one found decides
  EXPECT_NE(0u, m_key.GetValueType(L"n", nullptr) & 5);
  for (Text name : {L"missing", L"b.dat", (Text) nullptr, L"s", L"bare"})
    EXPECT_EQ(1, m_key.DeleteValue(name));
  EXPECT_EQ("b.dat n.dw n.sz N2.DW o.txt ", Values(L""));
  PutFolder(L"sub");
  EXPECT_EQ(0, m_key.DeleteValue(L"sub"));
}

TEST_F(RegFileKeyTest, ValuesOfAnyType) {
  const std::string number = "\xFB\xFF\xFF\xFF";
  const std::string text = "\x86\x51y\0\0\0"s;
  // Text at an odd address, too.
  EXPECT_EQ(1, m_key.SetValue(L"n", REG_DWORD, Data(number.data()), 0));
  EXPECT_EQ(1, m_key.SetValue(L"s", REG_SZ, Data(("#" + text).data()) + 1, 0));
  EXPECT_EQ(1, m_key.SetValue(L"b", REG_BINARY, Data("\0\1\2"), 3));
  EXPECT_EQ(1, m_key.SetValue(L"z", REG_SZ, nullptr, 0));
  for (const unsigned long type : {0, 2, 7, 11}) EXPECT_EQ(0, m_key.SetValue(L"x", type, Data("1234"), 4));
  for (const unsigned long type : {REG_DWORD, REG_BINARY})
    EXPECT_EQ(0, m_key.SetValue(L"x", type, nullptr, 4));
  EXPECT_EQ("b.dat n.dw s.sz z.sz ", Values(L""));
  // The bare name is no file. A size of 9 and "(none)" are what stays untouched.
  const std::tuple<Text, unsigned long, int, std::string> rows[] = {
      {L"n.dw", 4, 4, number},   {L"n", 4, 4, "\0\0\0\0"s},   {L"s.sz", 1, 12, text},
      {L"s", 1, 4, "\0\0"s},     {L"b.dat", 3, 3, "\0\1\2"s}, {L"b", 3, 9, "(none)"},
      {L"none", 0, 9, "(none)"}, {nullptr, 0, 9, "(none)"}};
  for (const auto& [name, expected_type, expected_size, bytes] : rows) {
    unsigned long type = 99;
    unsigned char* data = nullptr;
    int size = 9;
    EXPECT_EQ(0, m_key.GetValue(name, &type, &data, &size) | m_key.GetValue(name, nullptr, nullptr, nullptr));
    EXPECT_EQ(std::pair(expected_type, expected_size), std::pair(type, size)) << Utf8(name);
    EXPECT_EQ(bytes, Bytes(data, bytes.size())) << Utf8(name);
    QorFree(data);
  }
}

TEST_F(RegFileKeyTest, NamesAndSubKeys) {
  int count = 9;
  EXPECT_EQ(nullptr, m_key.GetValueNames(&count));
  EXPECT_EQ(nullptr, m_key.GetSubKeyNames(&count));
  EXPECT_EQ(9, count);
  for (Text name : {L"部数.dw", L"other.txt"}) Put(name, "");
  EXPECT_EQ(nullptr, m_key.GetSubKeyNames(&count));
  EXPECT_EQ(nullptr, m_key.OpenSubKey(L"a", 0));
  const std::unique_ptr<CQorRegFileKey> deep(m_key.OpenSubKey(L"sub.dw\\帳簿", 1));
  ASSERT_NE(nullptr, deep);
  EXPECT_TEXT(In(L"sub.dw\\帳簿"), deep->GetKeyName());
  EXPECT_EQ("other.txt 部数.dw ", Values(L""));
  ASSERT_TRUE(SetFileAttributesW(In(L""), FILE_ATTRIBUTE_READONLY));
  Text* names = m_key.GetSubKeyNames(&count);
  EXPECT_EQ("sub.dw ", Joined(names, count));
  EXPECT_EQ(0u, GetFileAttributesW(In(L"")) & FILE_ATTRIBUTE_READONLY);

  const std::unique_ptr<CQorRegFileKey> again(m_key.OpenSubKey(L"sub.dw", 0));
  ASSERT_NE(nullptr, again);
  EXPECT_EQ(1, again->Close() & again->Close());
  EXPECT_EQ(1, std::unique_ptr<CQorRegFileKey>(again->OpenSubKey(nullptr, 0))->DeleteSubKey(L"帳簿"));
  const CString longest(L'x', 256);
  for (Text name : {L"other.txt", L"other.txt\\x", longest.GetString()}) {
    EXPECT_EQ(nullptr, m_key.OpenSubKey(name, 1)) << Utf8(name);
    EXPECT_EQ(0, m_key.DeleteSubKey(name) | m_key.CopySubKey(m_key, name, 0, 0)) << Utf8(name);
  }
  EXPECT_EQ(0, again->DeleteSubKey(L"帳簿") | again->DeleteSubKey(nullptr));
  EXPECT_EQ(1, again->DeleteSubKey(L""));
  EXPECT_FALSE(Exists(In(L"sub.dw")));
}

TEST_F(RegFileKeyTest, ValuesAreCopiedByTheNumberOfSubKeys) {
  Put(L"src\\a.dw", Wide(" 7 "));
  Put(L"src\\b.sz", Wide("1\r\n2"));
  Put(L"src\\c.dat", "\0\r\n"s);
  Put(L"src\\d.txt", "not a value");
  TestKey source(In(L"src"));
  TestKey target(In(L"dst"));
  const std::tuple<Text, int, std::string> rows[] = {{L"src", 0, "(null)"},
                                                     {L"src\\1", 1, "a.dw "},
                                                     {L"src\\2\\3\\..\\..\\3", 1, "a.dw b.sz c.dat "},
                                                     {L"src\\4", 1, "a.dw b.sz c.dat "},
                                                     {L"src\\5", 0, "a.dw b.sz c.dat "}};
  for (const auto& [made, result, copied] : rows) {
    PutFolder(made);
    EXPECT_EQ(result, target.CopyValues(source)) << Utf8(made);
    EXPECT_EQ(copied, Values(L"dst")) << Utf8(made);
  }
  EXPECT_EQ(Wide("7") + Wide("1") + "\0\r\n"s, Get(L"dst\\a.dw") + Get(L"dst\\b.sz") + Get(L"dst\\c.dat"));
  PutFolder(L"bad\\a.dw");
  EXPECT_EQ(0, TestKey(In(L"bad")).CopyValues(source));
}

TEST_F(RegFileKeyTest, SubKeysAreCopiedByTheNumberOfTheDestinations) {
  for (Text name : {L"src\\a\\a1", L"src\\b", L"src\\c", L"dst\\x"}) PutFolder(name);
  Put(L"src\\a\\v.dw", Wide("1"));
  TestKey source(In(L"src"));
  TestKey target(In(L"dst"));
  EXPECT_EQ(0, TestKey(In(L"none")).CopySubKeys(source, 1, 1));
  // One sub-key of the destination: one is taken. Its own sub-key has none, which only the recursion minds.
  EXPECT_EQ(1, target.CopySubKeys(source, 1, 1));
  EXPECT_EQ(Wide("1"), Get(L"dst\\a\\v.dw"));
  EXPECT_TRUE(Exists(In(L"dst\\a\\a1")) && !Exists(In(L"dst\\b")));
  // Two by now; the second has no sub-keys, so that its values can't be copied.
  EXPECT_EQ(0, target.CopySubKeys(source, 0, 1));
  EXPECT_EQ(1, target.CopySubKeys(source, 0, 0));
  EXPECT_TRUE(Exists(In(L"dst\\c")));
  // Four by now, of which the source has three.
  EXPECT_EQ(0, target.CopySubKeys(source, 0, 0));
  const std::tuple<Text, Text, int, int> rows[] = {
      {L"a", L"new", 0, 1}, {L"none", nullptr, 0, 0}, {L"b", nullptr, 1, 0}};
  for (const auto& [name, new_name, sub_keys, result] : rows) {
    EXPECT_EQ(result, target.CopySubKeys(In(L"src"), In(L"dst"), name, new_name, sub_keys, 0, 0))
        << Utf8(name);
  }
  EXPECT_TRUE(Exists(In(L"dst\\new")));
}

TEST_F(RegFileKeyTest, WholeKeysAreCopied) {
  Put(L"src\\v.dw", Wide("1"));
  PutFolder(L"src\\a\\a1");
  TestKey source(In(L"src"));
  TestKey target(In(L"dst"));
  // In the last one "a" has a sub-key and no value to match, which fails its copy.
  const std::tuple<Text, int, int, int, Text, Text> rows[] = {
      {L"bare", 0, 0, 1, L"bare", L"bare\\v.dw"},
      {L"v", 0, 1, 1, L"v\\v.dw", L"v\\a"},
      {L"x\\k", 1, 0, 1, L"x\\k\\a\\a1", L"x\\k\\v.dw"},
      {L"both", 1, 1, 0, L"both\\v.dw", L"both\\a\\a1"}};
  for (const auto& [name, sub_keys, values, result, made, not_made] : rows) {
    // Every copy makes one more sub-key to count.
    target.DeleteSubKey(L"");
    EXPECT_EQ(result, target.CopySubKey(source, name, sub_keys, values)) << Utf8(name);
    EXPECT_TRUE(Exists(target.GetKeyName() + CString(L"\\") + made)) << Utf8(name);
    EXPECT_FALSE(Exists(target.GetKeyName() + CString(L"\\") + not_made)) << Utf8(name);
  }
  EXPECT_EQ(1, target.CopySubKey(source, nullptr, 0, 0));
  EXPECT_TRUE(Exists(CQorFileUtil::ConnectPath(In(L"dst"), source.GetKeyName())));
  // Into itself: an end comes with the length of the paths.
  EXPECT_EQ(1, source.CopySubKey(source, L"z", 1, 0));
  EXPECT_TRUE(Exists(In(L"src\\z\\z\\a\\a1")));
}

TEST_F(RegFileKeyTest, CopiesShareAndMayAllBeDestroyed) {
  m_key.SetString(L"t", L"円");
  m_key.SetBinary(L"b", Data("1234"), 4);
  auto source = std::make_unique<TestKey>(m_key.GetKeyName());
  Text* values = source->GetValueNames(nullptr);
  const void* bytes = source->GetBinary(L"b", nullptr);
  Text text = source->GetString(L"t", nullptr);
  TestKey copy(*source);
  TestKey assigned(L"C:\\none");
  assigned = copy;
  EXPECT_EQ(bytes, assigned.m_binary.get());
  EXPECT_EQ(source->GetKeyName(), assigned.GetKeyName());
  // What the source replaces and gives up stays with the copies.
  source->GetBinary(L"b", nullptr);
  source->GetValueNames(nullptr);
  source.reset();
  EXPECT_EQ("b.dat t.sz 1234", Joined(values, 2) + Bytes(bytes, 4));
  EXPECT_TEXT(L"円", text);
  // An open file, too.
  copy.OpenFile(In(L"open"), CQorFileUtil::_modeWb, 0);
  TestKey(copy).m_openFile->Write("x", 1);
  copy.CloseFile();
  EXPECT_EQ("x", Get(L"open"));
}

TEST_F(RegFileKeyTest, OperationsForDerivedClasses) {
  const CString path = In(L"deep\\any.name");
  EXPECT_THROWS_POINTER(m_key.OpenFile(path, CQorFileUtil::_modeRb, 0), CFileException);
  EXPECT_FALSE(Exists(In(L"")));
  EXPECT_EQ(1, m_key.OpenFile(path, CQorFileUtil::_modeWb, 1));
  m_key.m_openFile->Write("12", 2);
  EXPECT_EQ(1, m_key.OpenFile(path, CQorFileUtil::_modeRb, 0));  // closes the former one
  EXPECT_EQ(2u, m_key.m_openFile->GetLength());
  EXPECT_THROWS_POINTER(m_key.OpenFile(path + L"\\x", CQorFileUtil::_modeWb, 1), CFileException);
  m_key.CloseFile();
  EXPECT_EQ(3, m_key.SetLongFile(path, 3) * m_key.GetLongFile(path));
  EXPECT_EQ(1, m_key.SetStringFile(path, L"t"));
  EXPECT_TEXT(L"",
              m_key.GetStringFile(m_key.GetStringFile(path)));  // no such file; and its text was the path
  EXPECT_EQ(1, m_key.SetBinaryFile(path, Data("12"), 2));
  EXPECT_EQ("12", Bytes(m_key.GetBinaryFile(path), 2));
  EXPECT_EQ(2, m_key.m_binarySize);
  m_key.OpenFile(path, CQorFileUtil::_modeRb, 0);
  m_key.Construct(m_key.GetKeyName());
  EXPECT_TRUE(m_key.m_openFile == nullptr && m_key.m_binary == nullptr && m_key.m_binarySize == 0);
  m_key.Destruct(0);
  EXPECT_TEXT(L"", m_key.GetKeyName());
  m_key.Construct(nullptr);
  EXPECT_TEXT(L"", m_key.GetKeyName());
}

TEST_F(RegFileKeyTest, TwoKeysWriteOneTree) {
  const auto write = [this](long value, Text text) {
    TestKey key(m_key.GetKeyName());
    for (int i = 0; i < 100; ++i) {
      key.SetLong(L"n", value);
      key.SetString(L"t", text);
      // Whatever is there was written by one of the two.
      const std::string read = std::to_string(key.GetLong(L"n", value)) + Utf8(key.GetString(L"t", text));
      EXPECT_EQ(std::string::npos, read.find_first_not_of("012ab")) << read;
    }
  };
  std::thread other(write, 11111, L"aaaa");
  write(22222, L"bbbbbbbb");
  other.join();
  EXPECT_EQ("n.dw t.sz ", Values(L""));
  EXPECT_EQ(1, TestKey(m_key.GetKeyName()).SetString(L"t", L"c"));
  EXPECT_TEXT(L"c", m_key.GetString(L"t", nullptr));
}

TEST_F(RegFileKeyTest, TwoKeysMakeTheSameFolders) {
  std::atomic<int> arrived = 0;
  const auto meet = [&arrived](int meeting) {
    for (++arrived; arrived < 2 * meeting;) std::this_thread::yield();
  };
  const auto make = [&](Text value) {
    TestKey root(m_key.GetKeyName());
    for (int i = 0; i < 60; ++i) {
      CString name;
      name.Format(L"%d\\a\\b", i);
      meet(2 * i + 1);
      EXPECT_EQ(1, TestKey(In(name)).SetLong(value, 1)) << i;
      meet(2 * i + 2);
      const std::unique_ptr<CQorRegFileKey> key(root.OpenSubKey(L"opened\\" + name, 1));
      EXPECT_NE(nullptr, key) << i;
    }
  };
  std::thread other(make, L"x");
  make(L"y");
  other.join();
}

}  // namespace
