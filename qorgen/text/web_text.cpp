// Text in web addresses.

#include <algorithm>
#include <array>
#include <cstring>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/error.h"
#include "qorgen/platform/module.h"
#include "qorgen/platform/strings.h"
#include "qorgen/text/internal/convert.h"
#include "qorgen/text/string_util.h"

using qorgen::text::View;
using qorgen::text::ViewOf;

namespace {

constexpr std::size_t kPiece = 100;        // units converted at a time
constexpr std::size_t kPieceBytes = 1024;  // more than UTF-8 makes of them
constexpr std::size_t kDecodedBytes = 1012;

using ConvertToMultiByte = HRESULT (*)(DWORD* mode, DWORD encoding, const wchar_t* text, int* units,
                                       char* bytes, int* byte_count);

// The system's text library, for the length of a call.
class TextLibrary {
 public:
  TextLibrary() : module_(LoadLibraryW(L"mlang.dll")) {}
  TextLibrary(const TextLibrary&) = delete;
  TextLibrary& operator=(const TextLibrary&) = delete;
  ~TextLibrary() {
    if (module_ != nullptr) FreeLibrary(module_);
  }

  ConvertToMultiByte Converter() const {
    if (module_ == nullptr) return nullptr;
    return reinterpret_cast<ConvertToMultiByte>(
        reinterpret_cast<void*>(GetProcAddress(module_, "ConvertINetUnicodeToMultiByte")));
  }

 private:
  HMODULE module_;
};

bool IsPlain(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         (c != 0 && std::strchr("$-_.!*'(),", c) != nullptr);
}

void AppendEncoded(CString& out, char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  if (byte == ' ') {
    out.AppendChar(L'+');
  } else if (IsPlain(byte)) {
    out.AppendChar(static_cast<wchar_t>(byte));
  } else {
    const auto value = static_cast<unsigned char>(byte);
    out.AppendChar(L'%');
    out.AppendChar(static_cast<wchar_t>(kDigits[value >> 4]));
    out.AppendChar(static_cast<wchar_t>(kDigits[value & 0xF]));
  }
}

// The value of a hexadecimal digit, or -1.
int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

CString CQorStringUtil::EncodeUTF16ToUTF8(const wchar_t* text) {
  CString encoded;
  if (text == nullptr) return encoded;
  const TextLibrary library;
  const ConvertToMultiByte convert = library.Converter();
  if (convert == nullptr) return encoded;
  for (View rest = ViewOf(text); !rest.empty();) {
    const View piece = rest.first(std::min(rest.size(), kPiece));
    std::array<char, kPieceBytes> bytes;
    DWORD mode = 0;  // nothing is carried from piece to piece
    int units = static_cast<int>(piece.size());
    int count = static_cast<int>(bytes.size());
    if (convert(&mode, CP_UTF8, piece.data(), &units, bytes.data(), &count) != S_OK) break;
    for (int i = 0; i < count; ++i) AppendEncoded(encoded, bytes[static_cast<std::size_t>(i)]);
    rest = rest.subspan(piece.size());
  }
  return encoded;
}

int CQorStringUtil::EncodeUTF8ToUTF16(const char* text, wchar_t* dest) {
  if (dest == nullptr) return 0;
  std::array<char, kDecodedBytes> bytes{};
  std::size_t count = 0;
  for (const char* at = text; at != nullptr && *at != 0; ++at) {
    if (count + 1 == bytes.size()) return 0;
    const int high = *at == '%' ? HexValue(at[1]) : -1;
    const int low = high >= 0 ? HexValue(at[2]) : -1;
    if (low >= 0) {
      bytes[count++] = static_cast<char>(high * 16 + low);
      at += 2;
    } else {
      bytes[count++] = *at;
    }
  }
  std::array<wchar_t, kDecodedBytes> decoded;
  const int units = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), -1, decoded.data(), kDecodedBytes);
  if (units < 1) return 0;
  std::copy_n(decoded.data(), units, dest);
  return 1;
}
