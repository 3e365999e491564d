#pragma once

// The digest half of the cryptographic service: a provider context and MD5 hashes. A context or hash belongs
// to one thread at a time.

#include "qorgen/platform/error_codes.h"
#include "qorgen/platform/types.h"

#if defined(_WIN32)
#include <wincrypt.h>
#else

using HCRYPTPROV = std::uintptr_t;
using HCRYPTHASH = std::uintptr_t;
using HCRYPTKEY = std::uintptr_t;
using ALG_ID = unsigned int;

inline constexpr DWORD PROV_RSA_FULL = 1;
inline constexpr DWORD CRYPT_VERIFYCONTEXT = 0xF0000000;
inline constexpr DWORD CRYPT_MACHINE_KEYSET = 0x20;
inline constexpr ALG_ID CALG_MD5 = 0x8003;
inline constexpr DWORD HP_ALGID = 1;
inline constexpr DWORD HP_HASHVAL = 2;
inline constexpr DWORD HP_HASHSIZE = 4;

// All give TRUE, or FALSE with the last error set; out-parameters then stay as they were.

// A context without keys. NTE_PROV_TYPE_NOT_DEF for another provider type, NTE_BAD_KEYSET without
// CRYPT_VERIFYCONTEXT (there is no key store on Linux), NTE_BAD_FLAGS for a key container beside it,
// NTE_PROVIDER_DLL_FAIL on a machine that lacks the library behind the service (Linux: libcrypto).
BOOL CryptAcquireContextW(HCRYPTPROV* provider, LPCWSTR container, LPCWSTR providerName, DWORD type,
                          DWORD flags);

// Ends the context; hashes made from it stay usable on Linux. Flags other than 0 give NTE_BAD_FLAGS.
BOOL CryptReleaseContext(HCRYPTPROV provider, DWORD flags);

// A new hash, which goes back through CryptDestroyHash. NTE_BAD_ALGID for anything but MD5 without a key.
BOOL CryptCreateHash(HCRYPTPROV provider, ALG_ID algorithm, HCRYPTKEY key, DWORD flags, HCRYPTHASH* hash);

// Adds bytes. NTE_BAD_HASH_STATE once the value has been asked for.
BOOL CryptHashData(HCRYPTHASH hash, const BYTE* data, DWORD length, DWORD flags);

// HP_ALGID and HP_HASHSIZE give a DWORD, HP_HASHVAL the digest, after which no bytes can be added. `length`
// holds the room and receives the size; with `data` null only the size. ERROR_MORE_DATA, with the size, when
// the room is short.
BOOL CryptGetHashParam(HCRYPTHASH hash, DWORD parameter, BYTE* data, DWORD* length, DWORD flags);

BOOL CryptDestroyHash(HCRYPTHASH hash);

#endif
