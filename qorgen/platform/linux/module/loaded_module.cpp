#include "qorgen/platform/linux/module/loaded_module.h"

#include <cstring>

#include "qorgen/platform/codepage.h"
#include "qorgen/platform/error.h"

namespace qorgen::platform {
namespace {

HRESULT ConvertINetUnicodeToMultiByte(DWORD*, DWORD code_page, const wchar_t* source, int* source_count,
                                      char* target, int* target_size) {
  constexpr DWORD kJapanese = 932;
  constexpr DWORD kUtf8 = 65001;
  if (source == nullptr || target_size == nullptr) return E_INVALIDARG;
  if (code_page != kUtf8 && code_page != kJapanese) return S_FALSE;
  int count = source_count != nullptr ? *source_count : -1;
  if (count < 0) {
    for (count = 0; source[count] != 0;) ++count;
  }
  const int size = target != nullptr && *target_size > 0 ? *target_size : 0;
  int bytes = 0;
  if (count > 0) {
    bytes =
        WideCharToMultiByte(code_page, 0, source, count, size > 0 ? target : nullptr, size, nullptr, nullptr);
  }
  const bool done = count == 0 || bytes > 0;
  if (source_count != nullptr) *source_count = done ? count : 0;
  *target_size = bytes;
  return done ? S_OK : E_FAIL;
}

struct Module {
  const char* name;  // in lower case, without ".dll"
  bool has_texts;
};

constexpr Module kModules[] = {{"winhttp", true}, {"mlang", false}};
constexpr const Module& kLanguageModule = kModules[1];

// Behind `name`, which the text begins with in any case; null where it doesn't.
const wchar_t* Behind(const wchar_t* text, const char* name) {
  for (; *name != 0; ++text, ++name) {
    const wchar_t unit = *text >= L'A' && *text <= L'Z' ? static_cast<wchar_t>(*text + 32) : *text;
    if (unit != static_cast<wchar_t>(*name)) return nullptr;
  }
  return text;
}

bool IsNamed(const wchar_t* text, const char* name) {
  const wchar_t* rest = Behind(text, name);
  if (rest != nullptr && *rest != 0) rest = Behind(rest, ".dll");
  return rest != nullptr && *rest == 0;
}

const Module* FromHandle(const void* handle) {
  for (const Module& module : kModules) {
    if (&module == handle) return &module;
  }
  return nullptr;
}

}  // namespace

ErrorTextTable ModuleErrorTexts(const void* module) {
  const Module* const found = FromHandle(module);
  return found != nullptr && found->has_texts ? WebTransportErrorTexts() : ErrorTextTable{nullptr, nullptr};
}

}  // namespace qorgen::platform

using namespace qorgen::platform;

HMODULE LoadLibraryW(const wchar_t* name) {
  if (name == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  for (const Module& module : kModules) {
    // The handle is only ever compared, never written through.
    if (IsNamed(name, module.name)) return reinterpret_cast<HMODULE>(const_cast<Module*>(&module));
  }
  SetLastError(ERROR_MOD_NOT_FOUND);
  return nullptr;
}

BOOL FreeLibrary(HMODULE module) {
  if (FromHandle(module) != nullptr) return TRUE;
  SetLastError(ERROR_MOD_NOT_FOUND);
  return FALSE;
}

FARPROC GetProcAddress(HMODULE module, const char* name) {
  const Module* const found = FromHandle(module);
  if (found == nullptr) {
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
  }
  if (found == &kLanguageModule && name != nullptr &&
      std::strcmp(name, "ConvertINetUnicodeToMultiByte") == 0) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(&ConvertINetUnicodeToMultiByte));
  }
  SetLastError(ERROR_PROC_NOT_FOUND);
  return nullptr;
}
