#include "qorgen/platform/crypto.h"

#include <cstring>
#include <gtest/gtest.h>

#include "qorgen/platform/error.h"

namespace {

TEST(CryptoTest, AHashIsFilledInPiecesAndEndsWithItsDigest) {
  HCRYPTPROV provider = 0;
  HCRYPTHASH hash = 0;
  EXPECT_FALSE(CryptAcquireContextW(&provider, nullptr, nullptr, 9999, CRYPT_VERIFYCONTEXT));
  ASSERT_TRUE(CryptAcquireContextW(&provider, nullptr, nullptr, PROV_RSA_FULL,
                                   CRYPT_VERIFYCONTEXT | CRYPT_MACHINE_KEYSET));
  EXPECT_FALSE(CryptCreateHash(provider, 0x1234, 0, 0, &hash));
  EXPECT_EQ(static_cast<DWORD>(NTE_BAD_ALGID), GetLastError());
  EXPECT_EQ(0u, hash);
  ASSERT_TRUE(CryptCreateHash(provider, CALG_MD5, 0, 0, &hash));
  const auto add = [&hash](const char* text) {
    return CryptHashData(hash, reinterpret_cast<const BYTE*>(text), static_cast<DWORD>(std::strlen(text)), 0);
  };
  for (const char* piece : {"message ", "", "digest"}) EXPECT_TRUE(add(piece));
  DWORD size = 0;
  EXPECT_TRUE(CryptGetHashParam(hash, HP_HASHVAL, nullptr, &size, 0));
  EXPECT_EQ(16u, size);
  BYTE digest[16];
  size = 8;
  EXPECT_FALSE(CryptGetHashParam(hash, HP_HASHVAL, digest, &size, 0));
  EXPECT_EQ(ERROR_MORE_DATA, GetLastError());
  EXPECT_EQ(16u, size);
  for (int time = 0; time < 2; ++time) {
    EXPECT_TRUE(CryptGetHashParam(hash, HP_HASHVAL, digest, &size, 0));
    EXPECT_EQ(0, std::memcmp(digest, "\xF9\x6B\x69\x7D\x7C\xB7\x93\x8D\x52\x5A\x2F\x31\xAA\xF1\x61\xD0", 16));
  }
  EXPECT_FALSE(add("more"));
  EXPECT_EQ(static_cast<DWORD>(NTE_BAD_HASH_STATE), GetLastError());
  EXPECT_TRUE(CryptDestroyHash(hash));
  EXPECT_TRUE(CryptReleaseContext(provider, 0));
}

}  // namespace
