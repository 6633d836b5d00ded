// wine_tests PROGRAMS [options of GoogleTest]: PROGRAMS is the folder of the bridge's Windows build.

#include "tests/wine/wine.h"

#include <QApplication>
#include <gmock/gmock.h>
#include <iostream>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setStyle("Fusion");
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " PROGRAMS\n";
        return EXIT_FAILURE;
    }
    try {
        const Wine wine(argv[1]);
        return RUN_ALL_TESTS();
    } catch (const std::exception& error) {
        std::cerr << "Wine cannot start, so nothing was tested: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
