#include "qorgen/platform/crypto.h"

#include <cstring>
#include <memory>
#include <new>
#include <openssl/evp.h>

#include "qorgen/platform/error.h"
#include "qorgen/platform/linux/optional_library.h"

namespace {

using qorgen::platform::Loaded;

struct Crypto : qorgen::platform::OptionalLibrary {
  Crypto() : OptionalLibrary(QORGEN_SONAME_CRYPTO) {}
  QORGEN_LIBRARY_FUNCTION(EVP_DigestFinal_ex);
  QORGEN_LIBRARY_FUNCTION(EVP_DigestInit_ex);
  QORGEN_LIBRARY_FUNCTION(EVP_DigestUpdate);
  QORGEN_LIBRARY_FUNCTION(EVP_MD_CTX_free);
  QORGEN_LIBRARY_FUNCTION(EVP_MD_CTX_new);
  QORGEN_LIBRARY_FUNCTION(EVP_md5);
};

constexpr DWORD kDigestSize = 16;

struct Hash {
  const Crypto& crypto;
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context;
  bool finished = false;
  unsigned char digest[EVP_MAX_MD_SIZE] = {};
};

// A context holds no state here; its address only tells it from null.
struct Provider {};

BOOL Fail(HRESULT error) {
  SetLastError(static_cast<DWORD>(error));
  return FALSE;
}

Hash* HashOf(HCRYPTHASH hash) {
  return reinterpret_cast<Hash*>(hash);
}

bool Finish(Hash& hash) {
  if (hash.finished) return true;
  unsigned int size = 0;
  hash.finished =
      hash.crypto.EVP_DigestFinal_ex(hash.context.get(), hash.digest, &size) == 1 && size == kDigestSize;
  return hash.finished;
}

}  // namespace

BOOL CryptAcquireContextW(HCRYPTPROV* provider, LPCWSTR container, LPCWSTR /*providerName*/, DWORD type,
                          DWORD flags) {
  if (provider == nullptr) return Fail(static_cast<HRESULT>(ERROR_INVALID_PARAMETER));
  if (type != PROV_RSA_FULL) return Fail(NTE_PROV_TYPE_NOT_DEF);
  if ((flags & CRYPT_VERIFYCONTEXT) != CRYPT_VERIFYCONTEXT) return Fail(NTE_BAD_KEYSET);
  if (container != nullptr) return Fail(NTE_BAD_FLAGS);
  if (Loaded<Crypto>() == nullptr) return Fail(NTE_PROVIDER_DLL_FAIL);
  auto* made = new (std::nothrow) Provider;
  if (made == nullptr) return Fail(static_cast<HRESULT>(ERROR_NOT_ENOUGH_MEMORY));
  *provider = reinterpret_cast<HCRYPTPROV>(made);
  return TRUE;
}

BOOL CryptReleaseContext(HCRYPTPROV provider, DWORD flags) {
  if (provider == 0) return Fail(static_cast<HRESULT>(ERROR_INVALID_PARAMETER));
  delete reinterpret_cast<Provider*>(provider);
  return flags == 0 ? TRUE : Fail(NTE_BAD_FLAGS);
}

BOOL CryptCreateHash(HCRYPTPROV provider, ALG_ID algorithm, HCRYPTKEY key, DWORD /*flags*/,
                     HCRYPTHASH* hash) {
  if (provider == 0 || hash == nullptr) return Fail(static_cast<HRESULT>(ERROR_INVALID_PARAMETER));
  if (algorithm != CALG_MD5 || key != 0) return Fail(NTE_BAD_ALGID);
  const Crypto* crypto = Loaded<Crypto>();
  if (crypto == nullptr) return Fail(NTE_PROVIDER_DLL_FAIL);
  std::unique_ptr<Hash> made(new (std::nothrow)
                                 Hash{*crypto, {crypto->EVP_MD_CTX_new(), crypto->EVP_MD_CTX_free}});
  if (made == nullptr || made->context == nullptr) return Fail(static_cast<HRESULT>(ERROR_NOT_ENOUGH_MEMORY));
  if (crypto->EVP_DigestInit_ex(made->context.get(), crypto->EVP_md5(), nullptr) != 1) return Fail(NTE_FAIL);
  *hash = reinterpret_cast<HCRYPTHASH>(made.release());
  return TRUE;
}

BOOL CryptHashData(HCRYPTHASH hash, const BYTE* data, DWORD length, DWORD /*flags*/) {
  if (hash == 0) return Fail(static_cast<HRESULT>(ERROR_INVALID_PARAMETER));
  if (HashOf(hash)->finished) return Fail(NTE_BAD_HASH_STATE);
  if (length == 0) return TRUE;
  if (data == nullptr) return Fail(static_cast<HRESULT>(ERROR_INVALID_PARAMETER));
  const Hash& target = *HashOf(hash);
  return target.crypto.EVP_DigestUpdate(target.context.get(), data, length) == 1 ? TRUE : Fail(NTE_FAIL);
}

BOOL CryptGetHashParam(HCRYPTHASH hash, DWORD parameter, BYTE* data, DWORD* length, DWORD /*flags*/) {
  if (hash == 0 || length == nullptr) return Fail(static_cast<HRESULT>(ERROR_INVALID_PARAMETER));
  const DWORD number = parameter == HP_ALGID ? CALG_MD5 : kDigestSize;
  const void* value = &number;
  DWORD size = sizeof(number);
  if (parameter == HP_HASHVAL) {
    value = HashOf(hash)->digest;
    size = kDigestSize;
  } else if (parameter != HP_ALGID && parameter != HP_HASHSIZE) {
    return Fail(NTE_BAD_TYPE);
  }
  const DWORD room = *length;
  *length = size;
  if (data == nullptr) return TRUE;
  if (room < size) return Fail(static_cast<HRESULT>(ERROR_MORE_DATA));
  if (parameter == HP_HASHVAL && !Finish(*HashOf(hash))) return Fail(NTE_FAIL);
  std::memcpy(data, value, size);
  return TRUE;
}

BOOL CryptDestroyHash(HCRYPTHASH hash) {
  if (hash == 0) return Fail(static_cast<HRESULT>(ERROR_INVALID_PARAMETER));
  delete HashOf(hash);
  return TRUE;
}
