#include "bridge/options.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

TEST(BridgeOptions, TheUsualBridgeServesThisComputerAlone) {
    const auto options = bridge::parseOptions({});
    EXPECT_EQ(options.listen, "127.0.0.1");
    EXPECT_EQ(options.port, 7380);
    EXPECT_FALSE(options.console);
}

TEST(BridgeOptions, AnotherComputerIsNamed) {
    const auto options = bridge::parseOptions({"--listen", "0.0.0.0", "--allow=192.168.1.20,10.0.0.1",
                                               "--allow", "10.0.0.2", "--port=1", "--console"});
    EXPECT_EQ(options.listen, "0.0.0.0");
    EXPECT_EQ(options.port, 1);
    EXPECT_THAT(options.allowed, ElementsAre("192.168.1.20", "10.0.0.1", "10.0.0.2"));
    EXPECT_TRUE(options.console);
}

TEST(BridgeOptions, WhatIsWrongIsSaidInASentence) {
    struct Case {
        std::vector<std::string> words;
        const char* why;
    };
    for (const auto& [words, why] : {
             Case{{"--listen", "192.168.1.2"}, "--allow"},
             Case{{"--listen", "localhost", "--allow", "10.0.0.1"}, "\"localhost\" is no IPv4 address"},
             Case{{"--listen", "1.2.3"}, "\"1.2.3\" is no IPv4 address"},
             Case{{"--listen", "1.2.3.4.5"}, "no IPv4 address"},
             Case{{"--listen", "1.2.3."}, "no IPv4 address"},
             Case{{"--allow", "10.0.0.256"}, "no IPv4 address"},
             Case{{"--allow", "010.0.0.1"}, "no IPv4 address"}, // some would read it as octal
             Case{{"--allow", "-0.0.0.1"}, "no IPv4 address"},
             Case{{"--allow", "10.0.0.1,"}, "\"\" is no IPv4 address"},
             Case{{"--allow="}, "\"\" is no IPv4 address"},
             Case{{"--port", "0"}, "\"0\" is no number"},
             Case{{"--port", "65536"}, "no number from 1 to 65535"},
             Case{{"--port", "80x"}, "no number"},
             Case{{"--port"}, "--port needs a value"},
             Case{{"--console=yes"}, "--console takes no value"},
             Case{{"--quiet"}, "\"--quiet\" is no option"},
             Case{{"7380"}, "\"7380\" is no option"},
         }) {
        try {
            bridge::parseOptions(words);
            ADD_FAILURE() << words[0] << " was taken";
        } catch (const bridge::OptionError& error) {
            EXPECT_THAT(error.what(), HasSubstr(why));
        }
    }
}

} // namespace
