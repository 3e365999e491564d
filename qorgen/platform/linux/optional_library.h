#pragma once

// Libraries of the host that a service loads at its first use: a program starts without those it never asks for, and
// runs where one is missing. They stay loaded to the end of the process. Any thread may ask.
//
// A service lists the functions it calls, with the types that the library's own header declares, and asks for the list
// before it calls one; the build supplies the soname of the library whose headers it saw:
//
//   struct Gd : OptionalLibrary {
//     Gd() : OptionalLibrary(QORGEN_SONAME_GD) {}
//     QORGEN_LIBRARY_FUNCTION(gdImageCreate);
//   };
//   const Gd* gd = Loaded<Gd>();  // null: the service answers with its published error
//   if (gd != nullptr) gd->gdImageCreate(1, 1);

#include <type_traits>

namespace qorgen::platform {

class OptionalLibrary {
 public:
  OptionalLibrary(const OptionalLibrary&) = delete;
  OptionalLibrary& operator=(const OptionalLibrary&) = delete;

  // Whether the library was found with every function of the list.
  [[nodiscard]] bool IsComplete() const { return library_ != nullptr && complete_; }

 protected:
  explicit OptionalLibrary(const char* soname);

  // Turns into a pointer to a function of the type that is asked for.
  class Address {
   public:
    explicit Address(void* address) : address_(address) {}
    template <class Function, class = std::enable_if_t<std::is_function_v<Function>>>
    operator Function*() const {
      return reinterpret_cast<Function*>(address_);
    }

   private:
    void* address_;
  };

  // A function of the library or of one that it brings along. One that is missing leaves the list incomplete.
  [[nodiscard]] Address Find(const char* name);
  // The same for one that the service can do without: null when it is missing.
  [[nodiscard]] Address FindIfThere(const char* name) const;

 private:
  void* library_;
  bool complete_ = true;
};

// A member of a list: the function's pointer under the function's name.
#define QORGEN_LIBRARY_FUNCTION(name) decltype(&::name) name = Find(#name)

// For tests alone: as long as the object lives, no library is there for any thread, loaded ones included.
class WithoutOptionalLibraries {
 public:
  WithoutOptionalLibraries();
  ~WithoutOptionalLibraries();
  WithoutOptionalLibraries(const WithoutOptionalLibraries&) = delete;
  WithoutOptionalLibraries& operator=(const WithoutOptionalLibraries&) = delete;

  [[nodiscard]] static bool IsAlive();
};

// The functions of a library, which the first call loads; null when it is missing or lacks one of them.
template <class Functions>
[[nodiscard]] const Functions* Loaded() {
  if (WithoutOptionalLibraries::IsAlive()) return nullptr;
  static const Functions functions;
  return functions.IsComplete() ? &functions : nullptr;
}

}  // namespace qorgen::platform
