// Names that would lead out of a key, and what no value is, on either host.

#include <gtest/gtest.h>
#include <memory>
#include <utility>

#include "qorgen/afx/memory.h"

#include "tests/settings/test_key.h"

namespace {

using namespace qorgen::tests;
using Text = const wchar_t*;

TEST_F(KeyTest, NamesOfDotsAreRefused) {
  Put(L"..\\above.dw", Wide("7"));
  Put(L"sub\\v.dw", Wide("1"));
  for (Text name :
       {L".", L"..", L"sub\\..", L"..\\CU", L"sub\\.\\x", L"./sub", L"sub/../..", L". .", L"...", L" "}) {
    EXPECT_EQ(nullptr, std::unique_ptr<CQorRegFileKey>(m_key.OpenSubKey(name, 0))) << Utf8(name);
    EXPECT_EQ(nullptr, std::unique_ptr<CQorRegFileKey>(m_key.OpenSubKey(name, 1))) << Utf8(name);
    EXPECT_EQ(0, m_key.DeleteSubKey(name) | m_key.CopySubKey(m_key, name, 0, 0)) << Utf8(name);
  }
  char bytes[] = "12";
  wchar_t buffer[] = L"##";
  for (Text name : {L".", L"..", L"sub\\..", L"sub/.", L". .", L"..."}) {
    EXPECT_EQ(0, m_key.SetLong(name, 1) | m_key.SetString(name, L"x") | m_key.SetBinary(name, bytes, 2))
        << Utf8(name);
    EXPECT_EQ(0, m_key.IsExistValue(name) | m_key.DeleteValue(name) | m_key.GetBinary(name, bytes, 2))
        << Utf8(name);
    // As of a value that isn't there and can't be stored.
    EXPECT_EQ(5, m_key.GetLong(name, 5)) << Utf8(name);
    EXPECT_TEXT(L"d", m_key.GetString(name, L"d"));
    EXPECT_EQ(1, m_key.GetString(name, buffer, 2, L"d"));
  }
  // These two take the name with its folders.
  unsigned long type = 9;
  unsigned char* data = nullptr;
  EXPECT_EQ(0, m_key.DeleteValue(L"..\\above"));
  EXPECT_EQ(0, m_key.GetValue(L"..\\above.dw", &type, &data, nullptr));
  EXPECT_TRUE(type == 0 && data == nullptr);
  EXPECT_EQ(Wide("7"), Get(L"..\\above.dw"));
  EXPECT_EQ(Wide("1"), Get(L"sub\\v.dw"));
  int count = 9;
  EXPECT_EQ(nullptr, m_key.GetValueNames(&count));
  // Dots inside a name are part of it.
  EXPECT_EQ(1, m_key.SetLong(L"..a", 1) & m_key.SetLong(L"a..b", 1));
  EXPECT_NE(nullptr, std::unique_ptr<CQorRegFileKey>(m_key.OpenSubKey(L"..a", 1)));
}

TEST_F(KeyTest, FilesOfWritersAreNoValues) {
  Put(L"~0.qr~", "left behind");
  Put(L"sub\\x.dw", Wide("1"));
  int count = 9;
  EXPECT_EQ(nullptr, m_key.GetValueNames(&count));
  TestKey target(In(L"target"));
  EXPECT_EQ(0, target.CopyValues(m_key));
  EXPECT_EQ(0, m_key.IsExistValue(L"~0"));
  EXPECT_EQ(1, m_key.SetString(L"~0", L"円"));
  EXPECT_EQ(1u, m_key.GetValueType(L"~0", nullptr));
  EXPECT_FALSE(Exists(In(L"~0.qr~")));
  EXPECT_NE(nullptr, m_key.GetValueNames(&count));
  EXPECT_EQ(1, count);
}

TEST_F(KeyTest, DefaultOfAReaderLeavesWhatWasStoredMeanwhile) {
  EXPECT_EQ(5, m_key.GetLong(L"n", 5));
  EXPECT_EQ(1, m_key.SetLong(L"n", 6));
  EXPECT_EQ(6, m_key.GetLong(L"n", 5));
}

}  // namespace
