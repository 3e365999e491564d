#include "qorgen/platform/crypto.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "qorgen/platform/error.h"

namespace {

class CryptoTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(CryptAcquireContextW(&m_provider, nullptr, nullptr, PROV_RSA_FULL,
                                     CRYPT_VERIFYCONTEXT | CRYPT_MACHINE_KEYSET));
    ASSERT_TRUE(CryptCreateHash(m_provider, CALG_MD5, 0, 0, &m_hash));
  }
  void TearDown() override {
    EXPECT_TRUE(CryptDestroyHash(m_hash));
    EXPECT_TRUE(CryptReleaseContext(m_provider, 0));
  }
  BOOL Add(const std::string& text) {
    return CryptHashData(m_hash, reinterpret_cast<const BYTE*>(text.data()), static_cast<DWORD>(text.size()),
                         0);
  }
  std::string Digest() {
    BYTE bytes[16] = {};
    DWORD size = sizeof(bytes);
    EXPECT_TRUE(CryptGetHashParam(m_hash, HP_HASHVAL, bytes, &size, 0));
    std::string text;
    for (const BYTE byte : bytes) {
      char digits[3];
      std::snprintf(digits, sizeof(digits), "%02x", byte);
      text += digits;
    }
    return text;
  }

  HCRYPTPROV m_provider = 0;
  HCRYPTHASH m_hash = 0;
};

TEST_F(CryptoTest, digest_of_nothing) {
  EXPECT_EQ("d41d8cd98f00b204e9800998ecf8427e", Digest());
}

TEST_F(CryptoTest, digest_does_not_depend_on_the_pieces_and_ends_the_hash) {
  EXPECT_TRUE(Add("message "));
  EXPECT_TRUE(Add(""));
  EXPECT_TRUE(Add("digest"));
  EXPECT_EQ("f96b697d7cb7938d525a2f31aaf161d0", Digest());
  EXPECT_EQ("f96b697d7cb7938d525a2f31aaf161d0", Digest());
  EXPECT_FALSE(Add("more"));
  EXPECT_EQ(static_cast<DWORD>(NTE_BAD_HASH_STATE), GetLastError());
}

TEST_F(CryptoTest, sizes_and_short_buffers) {
  DWORD size = 0;
  EXPECT_TRUE(CryptGetHashParam(m_hash, HP_HASHVAL, nullptr, &size, 0));
  EXPECT_EQ(16u, size);
  DWORD value = 0;
  size = sizeof(value);
  EXPECT_TRUE(CryptGetHashParam(m_hash, HP_HASHSIZE, reinterpret_cast<BYTE*>(&value), &size, 0));
  EXPECT_EQ(16u, value);
  BYTE little[8];
  size = sizeof(little);
  EXPECT_FALSE(CryptGetHashParam(m_hash, HP_HASHVAL, little, &size, 0));
  EXPECT_EQ(ERROR_MORE_DATA, GetLastError());
  EXPECT_EQ(16u, size);
}

TEST_F(CryptoTest, refuses_what_is_not_there) {
  HCRYPTPROV provider = 0;
  EXPECT_FALSE(CryptAcquireContextW(&provider, nullptr, nullptr, 9999, CRYPT_VERIFYCONTEXT));
  HCRYPTHASH hash = 0;
  EXPECT_FALSE(CryptCreateHash(m_provider, 0x1234, 0, 0, &hash));
  EXPECT_EQ(static_cast<DWORD>(NTE_BAD_ALGID), GetLastError());
  EXPECT_EQ(0u, hash);
}

}  // namespace
