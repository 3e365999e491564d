#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "qorgen/platform/error.h"
#include "qorgen/platform/linux/error/error_text_table.h"
#include "qorgen/platform/linux/module/loaded_module.h"
#include "qorgen/platform/locale.h"

using namespace qorgen::platform;

namespace {

const ErrorText* Find(const ErrorTextTable& table, DWORD number) {
  const ErrorText* const found = std::lower_bound(
      table.first, table.last, number, [](const ErrorText& row, DWORD value) { return row.number < value; });
  return found != table.last && found->number == number ? found : nullptr;
}

const ErrorText* FindInSystem(DWORD number) {
  const ErrorText* found = Find(SystemErrorTexts(), number);
  if (found != nullptr || (number & 0xFFFF0000) != 0x80070000) return found;
  const DWORD error = number & 0xFFFF;
  found = Find(SystemErrorTexts(), error);
  // As an HRESULT the numbers of the web transport belong to the system's table too.
  return found != nullptr ? found : Find(WebTransportErrorTexts(), error);
}

bool HasInsert(const wchar_t* text) {
  for (; *text != 0; ++text) {
    if (*text == L'%' && text[1] >= L'1' && text[1] <= L'9') return true;
  }
  return false;
}

DWORD Fail(DWORD error) {
  SetLastError(error);
  return 0;
}

}  // namespace

DWORD FormatMessageW(DWORD flags, const void* source, DWORD id, DWORD language, wchar_t* buffer, DWORD size,
                     va_list*) {
  constexpr DWORD kTables = FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_FROM_SYSTEM;
  constexpr DWORD kServed = kTables | FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS;
  if (buffer == nullptr || (flags & ~kServed) != 0 || (flags & kTables) == 0)
    return Fail(ERROR_INVALID_PARAMETER);

  const WORD primary = PRIMARYLANGID(static_cast<WORD>(language));
  if (primary != LANG_NEUTRAL && primary != LANG_JAPANESE && primary != LANG_ENGLISH) {
    return Fail(ERROR_RESOURCE_LANG_NOT_FOUND);
  }
  const WORD wanted = primary != LANG_NEUTRAL ? primary : PRIMARYLANGID(GetUserDefaultUILanguage());

  const ErrorText* found = nullptr;
  if ((flags & FORMAT_MESSAGE_FROM_HMODULE) != 0) {
    const ErrorTextTable table = ModuleErrorTexts(source);
    if (table.first == nullptr && (flags & FORMAT_MESSAGE_FROM_SYSTEM) == 0)
      return Fail(ERROR_RESOURCE_TYPE_NOT_FOUND);
    found = Find(table, id);
  }
  if (found == nullptr && (flags & FORMAT_MESSAGE_FROM_SYSTEM) != 0) found = FindInSystem(id);
  if (found == nullptr) return Fail(ERROR_MR_MID_NOT_FOUND);
  const wchar_t* const text = wanted == LANG_JAPANESE ? found->japanese : found->english;
  if ((flags & FORMAT_MESSAGE_IGNORE_INSERTS) == 0 && HasInsert(text)) return Fail(ERROR_INVALID_PARAMETER);

  DWORD length = 0;
  while (text[length] != 0) ++length;
  const DWORD whole = length + 2;
  wchar_t* target = buffer;
  if ((flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) != 0) {
    target = static_cast<wchar_t*>(std::malloc(std::max<std::size_t>(size, whole + 1) * sizeof(wchar_t)));
    if (target == nullptr) return Fail(ERROR_NOT_ENOUGH_MEMORY);
    // The parameter is the address of a pointer in this mode.
    std::memcpy(static_cast<void*>(buffer), &target, sizeof target);
  } else if (whole >= size) {
    return Fail(ERROR_INSUFFICIENT_BUFFER);
  }
  std::memcpy(target, text, length * sizeof(wchar_t));
  target[length] = L'\r';
  target[length + 1] = L'\n';
  target[whole] = 0;
  return whole;
}

HLOCAL LocalFree(HLOCAL block) {
  std::free(block);
  return nullptr;
}
