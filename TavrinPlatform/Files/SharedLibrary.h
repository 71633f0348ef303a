#pragma once

#include "TavrinCore/Text/Texts.h"

#include <dlfcn.h>
#include <initializer_list>
#include <string>

namespace tavrin {

/// A library that is not linked but loaded when it is first wanted; it stays.
class SharedLibrary {
public:
  /// The first of `names` that the system has.
  SharedLibrary(std::initializer_list<const char*> names) {
    for (const char* name : names)
      if (handle_ == nullptr)
        handle_ = ::dlopen(name, RTLD_NOW | RTLD_LOCAL);
  }

  /// The cryptography library, by what its third version is called here.
  static SharedLibrary crypto() {
#ifdef TAVRIN_LIBCRYPTO
    return {TAVRIN_LIBCRYPTO}; // a Mac looks for a library by its whole path only
#else
    return {"libcrypto.so.3"};
#endif
  }

  /// Sets `function` to the library's of that name; false where there is none.
  template <class Function> bool find(Function*& function, const char* name) const {
    function = handle_ != nullptr ? reinterpret_cast<Function*>(::dlsym(handle_, name)) : nullptr;
    return function != nullptr;
  }

  /// Why the last library or function of this thread was not found; a sentence's end.
  static std::string reason() {
    const char* text = ::dlerror();
    return text != nullptr ? text : translated("it is not there");
  }

private:
  void* handle_ = nullptr;
};

} // namespace tavrin
