#include "qorgen/settings/reg_file_key.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "qorgen/afx/exception.h"
#include "qorgen/afx/memory.h"
#include "qorgen/files/file_util.h"
#include "qorgen/platform/filesystem.h"

#include "tests/settings/test_key.h"
#include "tests/support/throws.h"
#include "tests/support/wine.h"

namespace {

using qorgen::tests::Exists;
using qorgen::tests::GetFile;
using qorgen::tests::PutFile;
using qorgen::tests::TestKey;
using qorgen::tests::Utf8;
using qorgen::tests::Wide;
using namespace std::string_literals;

class RegFileKeyTest : public testing::Test {
 protected:
  CString In(const wchar_t* name) { return CQorFileUtil::ConnectPath(m_key.GetKeyName(), name); }
  void Put(const wchar_t* name, const std::string& bytes) {
    ASSERT_EQ(1, CQorFileUtil::CreateDirIfNotExists(In(name), 1)) << Utf8(name);
    ASSERT_TRUE(PutFile(In(name), bytes)) << Utf8(name);
  }
  void PutFolder(const wchar_t* name) { ASSERT_EQ(1, CQorFileUtil::CreateDirectories(In(name))); }
  std::string Get(const wchar_t* name) { return GetFile(In(name)); }

  // The names of a list, a space behind each; "(null)" for none.
  static std::string Joined(const wchar_t** names, int count) {
    if (names == nullptr) return "(null)";
    std::string all;
    for (int i = 0; i < count; ++i) all += Utf8(names[i]) + " ";
    return all;
  }
  std::string Values(const wchar_t* sub_key) {
    TestKey key(In(sub_key));
    int count = -1;
    const wchar_t** names = key.GetValueNames(&count);
    return Joined(names, count);
  }

  qorgen::tests::ScratchFolder m_folder;
  // Below a folder that isn't there: nothing exists before the first write.
  TestKey m_key{CString(m_folder.Path(L"")) + L"\\会計\\CU"};
};

TEST_F(RegFileKeyTest, roots_lie_in_the_common_documents_folder) {
  const CString documents = CQorFileUtil::GetCommonDocumentPath();
  ASSERT_FALSE(documents.IsEmpty());
  const bool there = Exists(documents + L"\\KeyVault");
  EXPECT_TEXT(documents + L"\\KeyVault\\LM", CQorRegFileKey(HKEY_LOCAL_MACHINE).GetKeyName());
  EXPECT_TEXT(documents + L"\\KeyVault\\CU", CQorRegFileKey(HKEY_CURRENT_USER).GetKeyName());
  EXPECT_TEXT(documents + L"\\", CQorRegFileKey(nullptr).GetKeyName());
  EXPECT_EQ(there, Exists(documents + L"\\KeyVault"));
}

TEST_F(RegFileKeyTest, bytes_on_disk) {
  const std::pair<long, const char*> numbers[] = {
      {-1, "-1"}, {0, "0"}, {2147483647, "2147483647"}, {-2147483647 - 1, "-2147483648"}};
  for (const auto& [value, text] : numbers) {
    ASSERT_EQ(1, m_key.SetLong(L"n", value));
    EXPECT_EQ(Wide(text), Get(L"n.dw"));
    EXPECT_EQ(value, m_key.GetLong(L"n", 5));
    EXPECT_EQ(1, m_key.SetInt(L"i", static_cast<int>(value)));
    EXPECT_EQ(value, m_key.GetInt(L"i", 5));
  }
  EXPECT_EQ("\xFF\xFE\x2D\0\x31\0"s, (m_key.SetLong(L"n", -1), Get(L"n.dw")));

  struct {
    const wchar_t* value;
    std::string bytes;
    const wchar_t* read;
  } const texts[] = {
      {L"", Wide(""), L""},
      {nullptr, Wide(""), L""},
      {L"ab", Wide("ab"), L"ab"},
      {L"円\xD83D\xDE00\xD800", "\xFF\xFE\x86\x51\x3D\xD8\x00\xDE\x00\xD8"s, L"円\xD83D\xDE00\xD800"},
      {L"1\n2\n", Wide("1\r\n2\r\n"), L"1"},
      {L"\n2", Wide("\r\n2"), L""},
  };
  for (const auto& row : texts) {
    ASSERT_EQ(1, m_key.SetString(L"t", row.value));
    EXPECT_EQ(row.bytes, Get(L"t.sz"));
    EXPECT_TEXT(row.read, m_key.GetString(L"t", L"default"));
  }

  const std::string bytes = "\xFF\xFE\r\n\n\0\x1A"s;
  EXPECT_EQ(1, m_key.SetBinary(L"b", const_cast<char*>(bytes.data()), static_cast<int>(bytes.size())));
  EXPECT_EQ(bytes, Get(L"b.dat"));
}

TEST_F(RegFileKeyTest, names_lose_folder_and_last_extension) {
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {nullptr, L"_ROOT.dw"}, {L"a.b", L"a.dw"},    {L"a.b.c", L"a.b.dw"}, {L"x\\y", L"y.dw"},
      {L"x/z.", L"z.dw"},     {L"C:\\w", L"w.dw"},  {L"部数", L"部数.dw"}, {L"", L".dw"},
      {L"d.dw", L"d.dw"},     {L"a b.c", L"a b.dw"}};
  for (const auto& [name, file] : rows) {
    EXPECT_EQ(1, m_key.SetLong(name, 7)) << Utf8(name);
    EXPECT_EQ(Wide("7"), Get(file)) << Utf8(file);
    EXPECT_EQ(1, CQorFileUtil::DeleteFileW(In(file)));
  }
  EXPECT_EQ("(null)", Values(L""));

  const std::pair<unsigned long, const wchar_t*> types[] = {
      {REG_SZ, L"s.sz"}, {REG_BINARY, L"s.dat"}, {REG_DWORD, L"s.dw"}, {2, L"s"}, {0, L"s"}};
  for (const auto& [type, file] : types) {
    EXPECT_TEXT(In(file), m_key.GetValuePath(L"x\\s.old", type, nullptr));
    EXPECT_TEXT(CString(L"C:\\k\\") + file, m_key.GetValuePath(L"s", type, L"C:\\k"));
  }
  // Its own result may be handed back.
  EXPECT_TEXT(In(L"s.sz"), m_key.GetValuePath(m_key.GetValuePath(L"s", REG_DWORD, nullptr), REG_SZ, nullptr));
}

TEST_F(RegFileKeyTest, defaults_are_stored_but_not_by_the_form_with_a_buffer) {
  EXPECT_EQ(12, m_key.GetLong(L"部数", 12));
  EXPECT_EQ(Wide("12"), Get(L"部数.dw"));
  EXPECT_EQ(12, m_key.GetLong(L"部数", 13));
  EXPECT_EQ(nullptr, m_key.GetString(L"t", nullptr));
  EXPECT_FALSE(Exists(In(L"t.sz")));
  wchar_t buffer[8] = L"1234567";
  EXPECT_EQ(0, m_key.GetString(L"t", buffer, 8, nullptr));
  EXPECT_TEXT(L"1234567", buffer);
  EXPECT_EQ(1, m_key.GetString(L"t", buffer, 8, L"既定"));
  EXPECT_EQ(0, std::memcmp(buffer, L"既定\0\0\0\0\0", sizeof buffer));
  EXPECT_FALSE(Exists(In(L"t.sz")));
  EXPECT_TEXT(L"既定", m_key.GetString(L"t", L"既定"));
  EXPECT_TEXT(L"既定", m_key.GetString(L"t", nullptr));
  // A default that is the key's own text.
  EXPECT_TEXT(L"既定", m_key.GetString(L"u", m_key.GetString(L"t", nullptr)));
  EXPECT_EQ(Get(L"t.sz"), Get(L"u.sz"));
}

TEST_F(RegFileKeyTest, texts_into_buffers) {
  ASSERT_EQ(1, m_key.SetString(L"t", L"abcd"));
  struct {
    int size;
    int result;
    const wchar_t* buffer;
  } const rows[] = {{6, 1, L"abcd\0\0##"},
                    {5, 1, L"abcd\0###"},
                    {4, 1, L"abcd####"},
                    {2, 1, L"ab######"},
                    {0, 1, L"########"},
                    {-1, 1, L"########"},
                    {-2147483647 - 1, 1, L"########"}};
  for (const auto& row : rows) {
    for (const wchar_t* name : {L"t", L"missing"}) {
      wchar_t buffer[9] = L"########";
      EXPECT_EQ(row.result, m_key.GetString(name, buffer, row.size, L"abcd")) << row.size;
      EXPECT_EQ(0, std::memcmp(buffer, row.buffer, 8 * sizeof(wchar_t))) << row.size;
    }
  }
  EXPECT_EQ(0, m_key.GetString(L"t", nullptr, 8, L"x"));
}

TEST_F(RegFileKeyTest, damaged_files_are_read_as_far_as_they_go) {
  const std::string many(100'000, '7');
  struct {
    const char* what;
    std::string bytes;
    long number;
    std::string text;
  } const rows[] = {
      {"empty", "", 0, ""},
      {"mark alone", Wide(""), 0, ""},
      {"half a mark", "\xFF", 0, ""},
      {"odd byte at the end", Wide("42") + "5", 42, "42"},
      {"without a mark", Wide("42").substr(2), 42, "42"},
      {"mark of UTF-8",
       "\xEF\xBB\xBF"
       "42",
       42, "42"},
      {"spaces", Wide(" \t "), 0, " \t "},
      {"spaces around", Wide(" 42 \r\n1"), 42, " 42 "},
      {"no number", Wide("x1"), 0, "x1"},
      {"number and more", Wide("12x"), 12, "12x"},
      {"too large", Wide("4294967297"), 2147483647, "4294967297"},
      {"too small", Wide("-99999999999999999999"), -2147483647 - 1, "-99999999999999999999"},
      {"first line empty", Wide("\r\n42"), 0, ""},
      {"huge", Wide(many), 2147483647, many},
  };
  for (const auto& row : rows) {
    Put(L"v.dw", row.bytes);
    Put(L"v.sz", row.bytes);
    EXPECT_EQ(row.number, m_key.GetLong(L"v", 5)) << row.what;
    EXPECT_EQ(row.text, Utf8(m_key.GetString(L"v", L"default"))) << row.what;
    wchar_t buffer[4] = L"###";
    EXPECT_EQ(1, m_key.GetString(L"v", buffer, 4, L"d")) << row.what;
    EXPECT_EQ(row.text.substr(0, 3), Utf8(CString(buffer, 3).GetString())) << row.what;
    EXPECT_EQ(row.bytes, Get(L"v.dw")) << row.what;
  }
  // A file with the mark of UTF-16BE can't be opened as text.
  Put(L"v.sz", "\xFE\xFF\0x"s);
  EXPECT_TRUE(qorgen::tests::HoldsExceptOnWine(*m_key.GetString(L"v", L"default") == 0));
}

TEST_F(RegFileKeyTest, folders_named_as_values) {
  for (const wchar_t* name : {L"a.dw", L"a.sz", L"a.dat"}) PutFolder(name);
  wchar_t buffer[3] = L"##";
  int size = 9;
  EXPECT_EQ(0, m_key.GetLong(L"a", 5));
  EXPECT_TEXT(L"", m_key.GetString(L"a", L"default"));
  EXPECT_EQ(0, m_key.GetString(L"a", buffer, 3, L"x"));
  EXPECT_TEXT(L"##", buffer);
  EXPECT_EQ(0, m_key.GetBinary(L"a", buffer, 4));
  EXPECT_EQ(nullptr, m_key.GetBinary(L"a", &size));
  EXPECT_EQ(0, size);
  EXPECT_EQ(0, m_key.SetLong(L"a", 1));
  EXPECT_EQ(0, m_key.SetString(L"a", L"x"));
  EXPECT_EQ(0, m_key.SetBinary(L"a", buffer, 4));
  EXPECT_EQ(0u, m_key.GetValueType(L"a", nullptr));
  EXPECT_EQ(1, m_key.DeleteValue(L"a"));
  EXPECT_EQ("(null)", Values(L""));
  // A file in the way of the key's own folder.
  Put(L"file", "");
  TestKey below(In(L"file"));
  EXPECT_EQ(0, below.SetLong(L"n", 1));
  EXPECT_EQ(3, below.GetLong(L"n", 3));
  EXPECT_EQ(0u, below.GetValueType(L"n", nullptr));
}

TEST_F(RegFileKeyTest, binary_values) {
  int size = 9;
  char buffer[6] = "#####";
  EXPECT_EQ(nullptr, m_key.GetBinary(L"b", &size));
  EXPECT_EQ(9, size);
  EXPECT_EQ(0, m_key.GetBinary(L"b", buffer, 5));

  ASSERT_EQ(1, m_key.SetBinary(L"b", const_cast<char*>("1234"), 4));
  EXPECT_EQ(0, std::memcmp(m_key.m_binary.get(), "1234", 4));
  EXPECT_EQ(0, m_key.m_binarySize);
  const std::pair<int, const char*> rows[] = {{-1, "#####"}, {0, "#####"}, {2, "12###"}, {5, "1234#"}};
  for (const auto& [room, expected] : rows) {
    std::memcpy(buffer, "#####", 6);
    EXPECT_EQ(1, m_key.GetBinary(L"b", buffer, room)) << room;
    EXPECT_STREQ(expected, buffer) << room;
  }
  EXPECT_EQ(0, m_key.GetBinary(L"b", static_cast<void*>(nullptr), 4));

  void* data = m_key.GetBinary(L"b", &size);
  ASSERT_NE(nullptr, data);
  EXPECT_EQ("1234", std::string(static_cast<char*>(data), static_cast<std::size_t>(size)));
  // The key's own bytes as source, and as target.
  EXPECT_EQ(1, m_key.SetBinary(L"copy", static_cast<char*>(data) + 1, 3));
  EXPECT_EQ("234", Get(L"copy.dat"));
  EXPECT_EQ(1, m_key.GetBinary(L"b", m_key.GetBinary(L"copy", nullptr), 3));

  EXPECT_EQ(0, m_key.SetBinary(L"b", buffer, -1));
  EXPECT_EQ(0, m_key.SetBinary(L"b", nullptr, 1));
  EXPECT_EQ("1234", Get(L"b.dat"));
  EXPECT_EQ(1, m_key.SetBinary(L"b", nullptr, 0));
  EXPECT_EQ("", Get(L"b.dat"));
  EXPECT_NE(nullptr, m_key.GetBinary(L"b", &size));
  EXPECT_EQ(0, size);
}

TEST_F(RegFileKeyTest, types_by_the_first_extension_found) {
  const std::pair<const wchar_t*, unsigned long> rows[] = {{L"n.dw", 4},  {L"N2.DW", 4}, {L"s.sz", 1},
                                                           {L"b.dat", 3}, {L"o.txt", 0}, {L"bare", 0}};
  for (const auto& [file, type] : rows) {
    Put(file, "");
    EXPECT_EQ(type, m_key.GetValueType(file, nullptr)) << Utf8(file);
    EXPECT_EQ(type != 0, m_key.IsExistValue(file) == 1) << Utf8(file);
    EXPECT_EQ(type, TestKey(L"C:\\none").GetValueType(file, m_key.GetKeyName())) << Utf8(file);
  }
  Put(L"_ROOT.sz", "");
  EXPECT_EQ(1u, m_key.GetValueType(nullptr, nullptr));
  EXPECT_EQ(0u, m_key.GetValueType(L"missing", nullptr));
  Put(L"two.dw", Wide("1"));
  Put(L"two.sz", Wide("x"));
  EXPECT_EQ(1, m_key.IsExistValue(L"two"));
  EXPECT_NE(0u, m_key.GetValueType(L"two", nullptr) & 5);
}

TEST_F(RegFileKeyTest, deleting_values) {
  EXPECT_EQ(1, m_key.DeleteValue(L"missing"));
  m_key.SetLong(L"n", 1);
  m_key.SetString(nullptr, L"x");
  m_key.SetBinary(L"b", nullptr, 0);
  Put(L"bare", "");
  EXPECT_EQ(1, m_key.DeleteValue(L"n.dw"));  // asks for "n.dw.dw"
  EXPECT_TRUE(Exists(In(L"n.dw")));
  for (const wchar_t* name : {L"n", (const wchar_t*)nullptr, L"b", L"bare"}) {
    EXPECT_EQ(1, m_key.DeleteValue(name)) << Utf8(name);
  }
  EXPECT_EQ("(null)", Values(L""));
  PutFolder(L"sub");
  EXPECT_EQ(0, m_key.DeleteValue(L"sub"));
  EXPECT_TRUE(Exists(In(L"sub")));
}

TEST_F(RegFileKeyTest, values_of_any_type) {
  std::int32_t number = -5;
  wchar_t text[] = L"円y";
  char bytes[] = "\0\1\2";
  // At odd addresses, too.
  unsigned char odd[16] = {};
  std::memcpy(odd + 1, text, sizeof text);
  EXPECT_EQ(1, m_key.SetValue(L"n", REG_DWORD, reinterpret_cast<unsigned char*>(&number), 0));
  EXPECT_EQ(1, m_key.SetValue(L"s", REG_SZ, odd + 1, 0));
  EXPECT_EQ(1, m_key.SetValue(L"b", REG_BINARY, reinterpret_cast<unsigned char*>(bytes), 3));
  EXPECT_EQ(1, m_key.SetValue(L"null", REG_SZ, nullptr, 0));
  for (const unsigned long type : {0ul, 2ul, 7ul, 11ul}) EXPECT_EQ(0, m_key.SetValue(L"x", type, odd, 4));
  EXPECT_EQ(0, m_key.SetValue(L"x", REG_DWORD, nullptr, 4));
  EXPECT_EQ(0, m_key.SetValue(L"x", REG_BINARY, nullptr, 4));
  EXPECT_EQ("b.dat n.dw null.sz s.sz ", Values(L""));

  struct {
    const wchar_t* name;
    unsigned long type;
    int size;  // 9 stands for untouched
    std::string data;
  } const rows[] = {
      {L"n.dw", REG_DWORD, 4, std::string(reinterpret_cast<char*>(&number), 4)},
      {L"n", REG_DWORD, 4, "\0\0\0\0"s},  // the bare name is no file
      {L"s.sz", REG_SZ, 12, std::string(reinterpret_cast<char*>(text), sizeof text)},
      {L"s", REG_SZ, 4, "\0\0"s},
      {L"b.dat", REG_BINARY, 3, std::string(bytes, 3)},
      {L"b", REG_BINARY, 9, "(none)"},
      {L"missing", 0, 9, "(none)"},
      {nullptr, 0, 9, "(none)"},
  };
  for (const auto& row : rows) {
    unsigned long type = 99;
    unsigned char* data = nullptr;
    int size = 9;
    EXPECT_EQ(0, m_key.GetValue(row.name, &type, &data, &size)) << Utf8(row.name);
    EXPECT_EQ(row.type, type) << Utf8(row.name);
    EXPECT_EQ(row.size, size) << Utf8(row.name);
    const std::string got =
        data != nullptr ? std::string(reinterpret_cast<char*>(data), row.data.size()) : "(none)";
    EXPECT_EQ(row.data, got) << Utf8(row.name);
    QorFree(data);
    EXPECT_EQ(0, m_key.GetValue(row.name, nullptr, nullptr, nullptr));
  }
}

TEST_F(RegFileKeyTest, lists_of_names) {
  int count = 9;
  EXPECT_EQ(nullptr, m_key.GetValueNames(&count));
  EXPECT_EQ(nullptr, m_key.GetSubKeyNames(&count));
  EXPECT_EQ(9, count);
  m_key.SetLong(L"部数", 1);
  EXPECT_EQ(nullptr, m_key.GetSubKeyNames(&count));
  m_key.SetString(L"x", L"");
  Put(L"other.txt", "");
  PutFolder(L"sub.dw");
  PutFolder(L"帳簿");
  const wchar_t** values = m_key.GetValueNames(&count);
  EXPECT_EQ("other.txt x.sz 部数.dw ", Joined(values, count));
  const wchar_t** keys = m_key.GetSubKeyNames(&count);
  EXPECT_EQ("sub.dw 帳簿 ", Joined(keys, count));
  EXPECT_NE(nullptr, m_key.GetValueNames(nullptr));

  ASSERT_TRUE(SetFileAttributesW(In(L""), FILE_ATTRIBUTE_READONLY));
  EXPECT_NE(nullptr, m_key.GetSubKeyNames(&count));
  EXPECT_EQ(0u, GetFileAttributesW(In(L"")) & FILE_ATTRIBUTE_READONLY);
}

TEST_F(RegFileKeyTest, sub_keys) {
  EXPECT_EQ(nullptr, m_key.OpenSubKey(L"a", 0));
  const std::unique_ptr<CQorRegFileKey> deep(m_key.OpenSubKey(L"a\\b\\c", 1));
  ASSERT_NE(nullptr, deep);
  EXPECT_TEXT(In(L"a\\b\\c"), deep->GetKeyName());
  EXPECT_EQ(1, deep->SetLong(L"n", 1));
  const std::unique_ptr<CQorRegFileKey> again(m_key.OpenSubKey(L"a\\b", 0));
  ASSERT_NE(nullptr, again);
  EXPECT_EQ(1, again->Close());
  EXPECT_EQ(1, again->Close());
  const std::unique_ptr<CQorRegFileKey> self(again->OpenSubKey(nullptr, 0));
  ASSERT_NE(nullptr, self);
  EXPECT_EQ(1, self->DeleteSubKey(L"c"));
  EXPECT_EQ(0, self->DeleteSubKey(L"c"));
  EXPECT_EQ(0, self->DeleteSubKey(nullptr));
  EXPECT_TRUE(Exists(In(L"a\\b")));
  Put(L"file", "");
  EXPECT_EQ(nullptr, m_key.OpenSubKey(L"file", 0));
  EXPECT_EQ(nullptr, m_key.OpenSubKey(L"file", 1));
  EXPECT_EQ(nullptr, m_key.OpenSubKey(L"file\\x", 1));
  EXPECT_EQ(nullptr, m_key.OpenSubKey(CString(L'x', 256), 1));
  EXPECT_EQ(0, m_key.DeleteSubKey(CString(L'x', 256)));
  EXPECT_EQ(0, m_key.CopySubKey(m_key, CString(L'x', 256), 0, 0));
  EXPECT_EQ(0, m_key.DeleteSubKey(L"file"));
  EXPECT_EQ(1, m_key.DeleteSubKey(L""));
  EXPECT_FALSE(Exists(In(L"a")));
}

TEST_F(RegFileKeyTest, values_are_copied_by_the_number_of_sub_keys) {
  struct {
    int sub_keys;
    int result;
    const char* copied;
  } const rows[] = {
      {0, 0, "(null)"}, {1, 1, "a.dw "}, {4, 1, "a.dw b.sz c.dat "}, {5, 0, "a.dw b.sz c.dat "}};
  Put(L"src\\a.dw", Wide(" 7 "));
  Put(L"src\\b.sz", Wide("1\r\n2"));
  Put(L"src\\c.dat", "\0\r\n"s);
  Put(L"src\\d.txt", "not a value");
  TestKey source(In(L"src"));
  int made = 0;
  for (const auto& row : rows) {
    for (; made < row.sub_keys; ++made) PutFolder(CString(L"src\\k") + static_cast<wchar_t>(L'0' + made));
    TestKey target(In(L"dst") + static_cast<wchar_t>(L'0' + made));
    EXPECT_EQ(row.result, target.CopyValues(source)) << row.sub_keys;
    EXPECT_EQ(row.copied, Values(CString(L"dst") + static_cast<wchar_t>(L'0' + made))) << row.sub_keys;
  }
  EXPECT_EQ(Wide("7"), Get(L"dst4\\a.dw"));
  EXPECT_EQ(Wide("1"), Get(L"dst4\\b.sz"));
  EXPECT_EQ("\0\r\n"s, Get(L"dst4\\c.dat"));
  PutFolder(L"bad\\a.dw");
  EXPECT_EQ(0, TestKey(In(L"bad")).CopyValues(source));
}

TEST_F(RegFileKeyTest, sub_keys_are_copied_by_the_number_of_the_destinations) {
  for (const wchar_t* name : {L"src\\a\\a1", L"src\\b", L"src\\c", L"dst\\x"}) PutFolder(name);
  Put(L"src\\a\\v.dw", Wide("1"));
  TestKey source(In(L"src"));
  TestKey target(In(L"dst"));
  EXPECT_EQ(0, TestKey(In(L"none")).CopySubKeys(source, 1, 1));
  // One sub-key of the destination: one is taken. Its own sub-key has none, which only the recursion minds.
  EXPECT_EQ(1, target.CopySubKeys(source, 1, 1));
  EXPECT_EQ(Wide("1"), Get(L"dst\\a\\v.dw"));
  EXPECT_TRUE(Exists(In(L"dst\\a\\a1")));
  EXPECT_FALSE(Exists(In(L"dst\\b")));
  // Two by now; the second has no sub-keys, so that its values can't be copied.
  EXPECT_EQ(0, target.CopySubKeys(source, 0, 1));
  EXPECT_TRUE(Exists(In(L"dst\\b")));
  EXPECT_EQ(1, target.CopySubKeys(source, 0, 0));
  EXPECT_TRUE(Exists(In(L"dst\\c")));
  // Four by now, of which the source has three.
  EXPECT_EQ(0, target.CopySubKeys(source, 0, 0));

  EXPECT_EQ(1, target.CopySubKeys(In(L"src"), In(L"dst"), L"a", L"new", 0, 0, 0));
  EXPECT_TRUE(Exists(In(L"dst\\new")));
  EXPECT_EQ(0, target.CopySubKeys(In(L"src"), In(L"dst"), L"none", nullptr, 0, 0, 0));
  EXPECT_EQ(0, target.CopySubKeys(In(L"src"), In(L"dst"), L"b", nullptr, 1, 0, 0));
}

TEST_F(RegFileKeyTest, whole_keys_are_copied) {
  Put(L"src\\v.dw", Wide("1"));
  PutFolder(L"src\\a\\a1");
  TestKey source(In(L"src"));
  struct {
    const wchar_t* name;
    int sub_keys, values;
    int result;
    const wchar_t* made;
    const wchar_t* not_made;
  } const rows[] = {
      {L"bare", 0, 0, 1, L"bare", L"bare\\v.dw"},
      {L"values", 0, 1, 1, L"values\\v.dw", L"values\\a"},
      {L"x\\keys", 1, 0, 1, L"x\\keys\\a\\a1", L"x\\keys\\v.dw"},
      // "a" has a sub-key and no values to match: its copy fails.
      {L"both", 1, 1, 0, L"both\\v.dw", L"both\\a\\a1"},
  };
  TestKey target(In(L"dst"));
  PutFolder(L"dst\\there");
  for (const auto& row : rows) {
    // Every copy makes one more sub-key to count; start from one again.
    EXPECT_EQ(1, target.DeleteSubKey(L""));
    EXPECT_EQ(row.result, target.CopySubKey(source, row.name, row.sub_keys, row.values)) << Utf8(row.name);
    EXPECT_TRUE(Exists(In(CString(L"dst\\") + row.made))) << Utf8(row.name);
    EXPECT_FALSE(Exists(In(CString(L"dst\\") + row.not_made))) << Utf8(row.name);
  }
  EXPECT_EQ(1, target.CopySubKey(source, nullptr, 0, 0));
  EXPECT_TRUE(Exists(CQorFileUtil::ConnectPath(In(L"dst"), source.GetKeyName())));
  Put(L"dst\\file", "");
  EXPECT_EQ(0, target.CopySubKey(source, L"file", 0, 0));
  // Into itself: an end comes with the length of the paths.
  EXPECT_EQ(1, source.CopySubKey(source, L"z", 1, 0));
  EXPECT_TRUE(Exists(In(L"src\\z\\z\\a\\a1")));
}

TEST_F(RegFileKeyTest, copies_share_and_may_all_be_destroyed) {
  m_key.SetString(L"t", L"円");
  m_key.SetBinary(L"b", const_cast<char*>("1234"), 4);
  PutFolder(L"sub");
  int count = 0;
  auto source = std::make_unique<TestKey>(m_key.GetKeyName());
  const wchar_t** values = source->GetValueNames(&count);
  const wchar_t** keys = source->GetSubKeyNames(nullptr);
  const void* bytes = source->GetBinary(L"b", nullptr);
  const wchar_t* text = source->GetString(L"t", nullptr);
  TestKey copy(*source);
  TestKey assigned(L"C:\\none");
  assigned = copy;
  assigned = *&assigned;
  EXPECT_EQ(source->GetKeyName(), copy.GetKeyName());
  EXPECT_EQ(bytes, copy.m_binary.get());
  // What the source replaces and gives up stays with the copies.
  source->GetBinary(L"t", nullptr);
  source->GetValueNames(nullptr);
  source.reset();
  EXPECT_EQ("b.dat t.sz ", Joined(values, count));
  EXPECT_TEXT(L"sub", keys[0]);
  EXPECT_EQ(0, std::memcmp(bytes, "1234", 4));
  EXPECT_TEXT(L"円", text);
  EXPECT_TEXT(L"円", assigned.GetString(L"t", nullptr));

  // An open file, too.
  copy.OpenFile(In(L"open.dat"), CQorFileUtil::_modeWb, 0);
  {
    TestKey other(copy);
    other.m_openFile->Write("x", 1);
    other.CloseFile();
  }
  EXPECT_EQ("x", Get(L"open.dat"));
  copy.CloseFile();
  EXPECT_EQ(nullptr, copy.m_openFile);
}

TEST_F(RegFileKeyTest, operations_for_derived_classes) {
  EXPECT_THROWS_POINTER(m_key.OpenFile(In(L"missing"), CQorFileUtil::_modeRb, 0), CFileException);
  EXPECT_FALSE(Exists(In(L"")));
  EXPECT_EQ(1, m_key.OpenFile(In(L"deep\\file"), CQorFileUtil::_modeWb, 1));
  m_key.m_openFile->Write("12", 2);
  // The next one closes it.
  EXPECT_EQ(1, m_key.OpenFile(In(L"deep\\file"), CQorFileUtil::_modeRb, 0));
  EXPECT_EQ(2u, m_key.m_openFile->GetLength());
  m_key.CloseFile();
  m_key.CloseFile();
  EXPECT_THROWS_POINTER(m_key.OpenFile(In(L"deep\\file\\x"), CQorFileUtil::_modeWb, 1), CFileException);

  EXPECT_EQ(1, m_key.SetLongFile(In(L"any.name"), 3));
  EXPECT_EQ(3, m_key.GetLongFile(In(L"any.name")));
  EXPECT_EQ(1, m_key.SetStringFile(In(L"any.name"), L"t"));
  const wchar_t* text = m_key.GetStringFile(In(L"any.name"));
  EXPECT_TEXT(L"t", text);
  EXPECT_TEXT(L"", m_key.GetStringFile(text));  // no such file; and the text was the path
  EXPECT_EQ(1, m_key.SetBinaryFile(In(L"any.name"), const_cast<char*>("12"), 2));
  EXPECT_EQ(0, std::memcmp(m_key.GetBinaryFile(In(L"any.name")), "12", 2));
  EXPECT_EQ(2, m_key.m_binarySize);
  m_key.DeleteBinary();
  EXPECT_EQ(nullptr, m_key.m_binary);
  EXPECT_EQ(0, m_key.m_binarySize);

  m_key.OpenFile(In(L"any.name"), CQorFileUtil::_modeRb, 0);
  m_key.Construct(m_key.GetKeyName());
  EXPECT_EQ(nullptr, m_key.m_openFile);
  EXPECT_EQ(1, CQorFileUtil::DeleteFileW(In(L"any.name")));
  m_key.Destruct(0);
  EXPECT_TEXT(L"", m_key.GetKeyName());
  m_key.Construct(nullptr);
  EXPECT_TEXT(L"", m_key.GetKeyName());
}

TEST_F(RegFileKeyTest, two_keys_write_one_tree) {
  const auto write = [this](long value, const wchar_t* text) {
    TestKey key(m_key.GetKeyName());
    for (int i = 0; i < 100; ++i) {
      key.SetLong(L"n", value);
      key.SetString(L"t", text);
      // Whatever is there was written by one of the two.
      const std::string number = std::to_string(key.GetLong(L"n", value));
      EXPECT_EQ(std::string::npos, number.find_first_not_of("012")) << number;
      const std::string got = Utf8(key.GetString(L"t", text));
      EXPECT_EQ(std::string::npos, got.find_first_not_of("ab")) << got;
    }
  };
  std::thread other(write, 11111, L"aaaa");
  write(22222, L"bbbbbbbb");
  other.join();
  EXPECT_EQ("n.dw t.sz ", Values(L""));
  TestKey last(m_key.GetKeyName());
  EXPECT_EQ(1, last.SetString(L"t", L"c"));
  EXPECT_TEXT(L"c", m_key.GetString(L"t", nullptr));
}

}  // namespace
