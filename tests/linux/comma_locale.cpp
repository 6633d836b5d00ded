#include "tests/comma_locale.h"

#include <clocale>
#include <cstdlib>
#include <string>

bool setCommaLocale(const std::filesystem::path& folder) {
    const std::string name = (folder / "comma").string();
    return std::system(("localedef -i de_DE -f UTF-8 " + name + " > /dev/null 2>&1").c_str()) == 0 &&
           setenv("LOCPATH", folder.c_str(), 1) == 0 && std::setlocale(LC_ALL, "comma");
}
