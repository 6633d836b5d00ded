#include "tests/platform/windows/subject.h"

#include <gmock/gmock.h>
#include <string_view>
#include <windows.h>

int main(int argc, char** argv) {
    // A crash must not open a box that nobody closes.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    constexpr std::string_view kSubject = "--subject=";
    if (argc == 2 && std::string_view(argv[1]).starts_with(kSubject))
        return runSubject(argv[1] + kSubject.size());
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
