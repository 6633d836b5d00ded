if(CMAKE_CROSSCOMPILING)
    # Debian has it for other systems as source alone.
    add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
else()
    find_package(GTest REQUIRED)
endif()
include(GoogleTest)

# twinstep_add_tests(<name> LAUNCHER <command...> LIBRARIES <target...> SOURCES <file...>)
#
# One executable; each of its test cases is one test of ctest. LAUNCHER stands before the executable wherever
# it is run, also when its cases are listed (which no test property reaches).
function(twinstep_add_tests name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LAUNCHER;LIBRARIES;SOURCES")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} twinstep_warnings GTest::gmock GTest::gtest)
    # What nearly every test includes costs more than the test itself.
    target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <filesystem> <fstream> <functional> <memory>
        <string> <vector>)
    if(arg_LAUNCHER)
        set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${arg_LAUNCHER}")
    endif()
    gtest_discover_tests(${name} TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 120)
endfunction()
