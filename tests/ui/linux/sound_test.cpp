#include "platform/qt/sound.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

TEST(PlatformSound, NeverKeepsTheEnginesWaiting) {
    const QTemporaryDir data;
    ASSERT_TRUE(QDir(data.path()).mkpath("assets/sounds"));
    QFile broken(data.filePath("assets/sounds/memup.wav"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("no sound at all");
    broken.close();
    qt_ports::Sound sound(data.path().toStdString());
    QElapsedTimer time;
    time.start();
    sound.play("memup.wav");
    sound.play("missing.wav");
    EXPECT_LT(time.elapsed(), 50);
}

} // namespace
