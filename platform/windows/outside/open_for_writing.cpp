#include "platform/trace/open_for_writing.h"

std::FILE* trace::openForWriting(const std::filesystem::path& path) {
    return ::_wfopen(path.c_str(), L"wbN"); // N: not inherited
}
