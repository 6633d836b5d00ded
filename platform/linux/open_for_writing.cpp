#include "platform/trace/open_for_writing.h"

std::FILE* trace::openForWriting(const std::filesystem::path& path) {
    return std::fopen(path.c_str(), "we"); // e: not inherited
}
