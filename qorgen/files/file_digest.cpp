// The digest of a file.

#include <cstddef>
#include <cstdio>

#include "qorgen/files/file_util.h"
#include "qorgen/platform/common/owned_stream.h"
#include "qorgen/platform/crypto.h"

namespace {

constexpr std::size_t kBlockSize = 65536;

class Md5 {
 public:
  Md5() = default;
  Md5(const Md5&) = delete;
  Md5& operator=(const Md5&) = delete;
  ~Md5() {
    if (m_hash != 0) CryptDestroyHash(m_hash);
    if (m_provider != 0) CryptReleaseContext(m_provider, 0);
  }

  bool Start() {
    return CryptAcquireContextW(&m_provider, nullptr, nullptr, PROV_RSA_FULL,
                                CRYPT_VERIFYCONTEXT | CRYPT_MACHINE_KEYSET) &&
           CryptCreateHash(m_provider, CALG_MD5, 0, 0, &m_hash);
  }

  bool Add(const BYTE* bytes, std::size_t count) {
    return CryptHashData(m_hash, bytes, static_cast<DWORD>(count), 0) != 0;
  }

  bool AppendTo(CString& text) const {
    BYTE value[64];
    DWORD size = 0;
    DWORD room = sizeof(size);
    if (!CryptGetHashParam(m_hash, HP_HASHSIZE, reinterpret_cast<BYTE*>(&size), &room, 0)) return false;
    if (size > sizeof(value) || !CryptGetHashParam(m_hash, HP_HASHVAL, value, &size, 0)) return false;
    for (DWORD i = 0; i < size; ++i) text.AppendFormat(L"%02x", value[i]);
    return true;
  }

 private:
  HCRYPTPROV m_provider = 0;
  HCRYPTHASH m_hash = 0;
};

// False when the stream could not be read. Only the first block that can be hashed enters the digest.
bool AddFirstBlock(Md5& md5, FILE* stream) {
  BYTE block[kBlockSize];
  while (const std::size_t count = std::fread(block, 1, sizeof(block), stream)) {
    if (md5.Add(block, count)) return true;
  }
  return std::ferror(stream) == 0;
}

}  // namespace

int CQorFileUtil::GetFileMD5(const wchar_t* path, CString& digest) {
  // `path` may be the text of `digest`.
  const CString source(path);
  digest.Empty();
  if (!IsExistFile(source)) return 0;
  Md5 md5;
  if (!md5.Start()) return 0;
  const qorgen::platform::OwnedStream stream(Open(source, _modeRb, 0));
  if (stream == nullptr || !AddFirstBlock(md5, stream.get())) return 0;
  return md5.AppendTo(digest) ? 1 : 0;
}
