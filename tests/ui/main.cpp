#include <QApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setStyle("Fusion");
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); // no test reaches into these
    return RUN_ALL_TESTS();
}
