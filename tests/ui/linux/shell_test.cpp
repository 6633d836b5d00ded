#include "platform/qt/shell.h"
#include "tests/ui/window_fixture.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <gmock/gmock.h>

namespace {

struct PlatformShell : ::testing::Test {
    PlatformShell() {
        QDir(data.path()).mkpath("docs");
        write("docs/page.html", "<h1>Help</h1><svg><text>drawing</text></svg><p>Esc stops</p>");
        qputenv("PATH", data.path().toLocal8Bit() + ':' + path);
    }
    ~PlatformShell() override { qputenv("PATH", path); }

    void write(const char* name, const QByteArray& text) const {
        QFile file(data.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    /// The desktop's opener ends so, and leaves what it was given in "opened".
    void desktop(int exitCode) const {
        write("xdg-open", "#!/bin/sh\necho \"$1\" >" + data.filePath("opened").toLocal8Bit() + "\nexit " +
                              QByteArray::number(exitCode) + '\n');
    }
    QByteArray opened() const {
        QFile file(data.filePath("opened"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QTextBrowser* pageWindow() {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (auto* browser = qobject_cast<QTextBrowser*>(top)) return browser;
        }
        return nullptr;
    }

    const QByteArray path = qgetenv("PATH");
    const QTemporaryDir data;
    qt_ports::Shell shell{data.path().toStdString()};
    std::vector<std::string> failures;
    const platform::Shell::Failed failed = [this](const std::string& why) { failures.push_back(why); };
};

TEST_F(PlatformShell, AMissingPageSaysSo) {
    shell.openPage("no_such_page.html", failed);
    EXPECT_THAT(failures, ::testing::ElementsAre(::testing::HasSubstr("no_such_page.html")));
}

TEST_F(PlatformShell, GivesPageAndMailToTheDesktop) {
    desktop(0);
    shell.openPage("page.html", failed);
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened().endsWith("docs/page.html\n"); }));
    shell.startMail("", "Twinstep Version 1", failed);
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened() == "mailto:?subject=Twinstep%20Version%201\n"; }));
    settle();
    EXPECT_FALSE(pageWindow());
    EXPECT_THAT(failures, ::testing::IsEmpty());
}

TEST_F(PlatformShell, WithoutABrowserThePageOpensInAWindowOfItsOwn) {
    constexpr int kNoProgram = 3; // of xdg-open
    desktop(kNoProgram);
    shell.openPage("page.html", failed);
    ASSERT_TRUE(QTest::qWaitFor([] { return pageWindow(); }));
    EXPECT_EQ(pageWindow()->toPlainText(), "Help\nEsc stops");
    shell.openPage("page.html", failed);
    settle();
    EXPECT_THAT(failures, ::testing::IsEmpty());
    shell.startMail("", "", failed);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !failures.empty(); }));
    EXPECT_THAT(failures, ::testing::ElementsAre("No mail program is set up on this computer."));
    EXPECT_TRUE(pageWindow()->close());
}

} // namespace
