// The program registered for a file type, through GIO.

#include "qorgen/platform/shell.h"

// GLib brings its own TRUE and FALSE unless they are there already.
#include <algorithm>
#include <gio/gio.h>
#include <memory>
#include <string>

#include "qorgen/platform/error.h"
#include "qorgen/platform/linux/filesystem/path_mapping.h"
#include "qorgen/platform/linux/optional_library.h"

namespace {

struct Gio : qorgen::platform::OptionalLibrary {
  Gio() : OptionalLibrary(QORGEN_SONAME_GIO) {}
  QORGEN_LIBRARY_FUNCTION(g_app_info_get_default_for_type);
  QORGEN_LIBRARY_FUNCTION(g_app_info_get_executable);
  QORGEN_LIBRARY_FUNCTION(g_content_type_guess);
  QORGEN_LIBRARY_FUNCTION(g_content_type_is_unknown);
  QORGEN_LIBRARY_FUNCTION(g_object_unref);  // of libgobject, which GIO brings along
};

using Text = std::unique_ptr<char, decltype(&g_free)>;
using Application = std::unique_ptr<GAppInfo, decltype(&g_object_unref)>;

// The host path of the default application's program; empty if there is none.
std::string FindProgram(const std::u16string& extension) {
  if (extension.size() < 2 || extension[0] != u'.' || extension.find_first_of(u"\\/") != extension.npos)
    return {};
  const Gio* gio = qorgen::platform::Loaded<Gio>();
  if (gio == nullptr) return {};
  const std::string name = "name" + qorgen::platform::HostName(extension);
  const Text type(gio->g_content_type_guess(name.c_str(), nullptr, 0, nullptr), g_free);
  if (type == nullptr || gio->g_content_type_is_unknown(type.get())) return {};
  const Application application(gio->g_app_info_get_default_for_type(type.get(), FALSE), gio->g_object_unref);
  const char* program = application != nullptr ? gio->g_app_info_get_executable(application.get()) : nullptr;
  if (program == nullptr) return {};
  const Text found(g_find_program_in_path(program), g_free);
  return found != nullptr ? std::string(found.get()) : std::string();
}

bool IsOpenVerb(LPCWSTR verb) {
  return verb == nullptr || qorgen::platform::TextOf(verb) == u"open";
}

}  // namespace

HRESULT AssocQueryStringW(ASSOCF flags, ASSOCSTR kind, LPCWSTR association, LPCWSTR verb, LPWSTR out,
                          DWORD* count) {
  if (kind != ASSOCSTR_EXECUTABLE || association == nullptr || association[0] == 0 || count == nullptr) {
    return E_INVALIDARG;
  }
  const std::string program =
      IsOpenVerb(verb) ? FindProgram(qorgen::platform::TextOf(association)) : std::string();
  if (program.empty()) return HRESULT_FROM_WIN32(ERROR_NO_ASSOCIATION);

  const std::u16string text = qorgen::platform::LibraryPath(program);
  const DWORD room = *count;
  const DWORD needed = static_cast<DWORD>(text.size() + 1);
  *count = needed;
  if (out == nullptr) return S_FALSE;
  if (room < needed) {
    if ((flags & ASSOCF_NOTRUNCATE) == 0 && room > 0) *std::copy_n(text.begin(), room - 1, out) = 0;
    return E_POINTER;
  }
  std::copy_n(text.c_str(), needed, out);
  return S_OK;
}
