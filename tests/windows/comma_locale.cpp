#include "tests/comma_locale.h"

#include <clocale>

bool setCommaLocale(const std::filesystem::path& /*folder*/) {
    return std::setlocale(LC_ALL, "German_Germany");
}
