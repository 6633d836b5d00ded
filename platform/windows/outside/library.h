#pragma once

#include <filesystem>
#include <string>
#include <windows.h>

namespace windows_ports {

/// A library of the user's, which stands beside the program.
class Library {
  public:
    /// Loads `file` from the program's folder alone. Throws runtime::ObjectError: it is missing, it is for
    /// 32-bit programs, or the system's reason.
    explicit Library(const std::string& file);
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() { FreeLibrary(library_); }

    /// Throws runtime::ObjectError if the library has no such function.
    template <class Function>
    void find(const char* name, Function& function) const {
        // Through void*, so that the compiler does not take the cast for a mistake.
        function = reinterpret_cast<Function>(address(name));
    }

    /// Whether such a file stands beside the program.
    static bool isThere(const std::string& file);

  private:
    void* address(const char* name) const;

    std::string file_;
    HMODULE library_;
};

} // namespace windows_ports
