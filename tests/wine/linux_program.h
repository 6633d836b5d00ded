#pragma once

#include "tests/wine/wine.h"

#include <QProcess>
#include <gtest/gtest.h>
#include <string>

/// The program as a user starts it, in a process of its own, with a hand on its buttons.
class Program {
  public:
    explicit Program(const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_PLUGIN_PATH", TWINSTEP_PLUGINS);
        environment.insert("QT_QPA_GENERIC_PLUGINS", "hand");
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        process_.setProcessEnvironment(environment);
        process_.start(TWINSTEP_PROGRAM, arguments);
        process_.waitForStarted();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { process_.kill(), process_.waitForFinished(); }

    /// Gives the hand an order and returns its answer; empty when there is none in time.
    std::string ask(const std::string& order) {
        process_.write((order + '\n').c_str());
        waitFor([this] { return process_.canReadLine(); });
        return process_.readLine().chopped(1).toStdString();
    }
    /// Whether it has ended, waited for.
    bool ends() {
        return waitFor([this] { return process_.state() == QProcess::NotRunning; });
    }
    ::testing::AssertionResult shows(const std::string& label, const std::string& expected) {
        std::string text;
        if (waitFor([&] { return (text = ask("text " + label)) == expected; }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << label << " shows \"" << text << "\"";
    }

  private:
    QProcess process_;
};
