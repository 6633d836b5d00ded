#pragma once

#include "app/controller.h"
#include "config/record_file.h"
#include "config/records.h"
#include "form/dialogs.h"
#include "tests/simulated_outside.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// A folder that lives as long as the test.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() / ("twinstep-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

inline std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// "save.cfg" as another program finds it and leaves it.
struct SavedFile {
    simulated::Storage& storage;
    std::filesystem::path file;

    const std::filesystem::path& path() const { return file; }
    config::RecordImage read() const { return config::RecordFile(storage, file).read(); }
    void write(std::vector<config::Record> records) const {
        config::RecordFile(storage, file).write(std::move(records));
    }
};

/// The whole program without a window: real form and subsystems, simulated outside, virtual time.
class Desk : public ::testing::Test, protected SimulatedOutside {
  protected:
    TemporaryFolder folder;
    SavedFile file{storage, folder.path() / "save.cfg"};
    std::unique_ptr<app::Controller> controller;

    std::string bytesOf(const std::filesystem::path& path) { return storage.bytesOf(path); }
    form::Form1& f() { return controller->form(); }

    /// Starts the program on what the folder holds; a program that runs already is abandoned.
    void start() {
        controller.reset();
        controller = std::make_unique<app::Controller>(ports(), folder.path());
        controller->start();
        port.takeAccesses();
    }

    /// A tuner that is set up: 200 steps/r, 10 units/r, 100 steps/s slow and 200 fast on both engines.
    void startTuner() {
        namespace record = config::record;
        file.write({config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 10),
                    config::integerRecord(record::kFastA, 200), config::integerRecord(record::kSlowA, 100),
                    config::integerRecord(record::kFastB, 200), config::integerRecord(record::kSlowB, 100),
                    config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 10),
                    config::integerRecord(record::kFunction, form::kCoilTuner),
                    config::integerRecord(record::kSlowDistance, 1),
                    config::integerRecord(record::kFrequencyProgram, form::kN1mmLogger)});
        start();
    }

    /// Types a text into a parameter as a user does: double-click, text, Enter.
    static void enter(form::Label& label, form::TextBox& box, const std::string& text) {
        label.DblClick.fire();
        box.Text.load(text);
        box.KeyDown.fire(form::TextBox::kEnter);
    }

    /// Stores memory n at these positions, as a user does.
    void storeMemory(int n, float a, float b, const std::string& label) {
        f().sngPosA = a;
        f().sngPosB = b;
        dialogs.okAnswers.push_back(true);
        dialogs.textAnswers.emplace_back(label);
        f().lblMem[n].DblClick.fire();
        dialogs.takeMessages();
    }

    /// Runs `script` on the next dialog of this kind.
    template <class Dialog>
    void inDialog(std::function<void(Dialog&)> script) {
        controller->boxes().modalWindow = [script](form::Form& shown) {
            auto* dialog = dynamic_cast<Dialog*>(&shown);
            ASSERT_NE(dialog, nullptr) << shown.name();
            script(*dialog);
        };
    }

    void connectN1mm(int listenPort = 12060) {
        f().cmdAutoMemConn.Click.fire();
        ASSERT_TRUE(udp.listening(listenPort));
    }
    /// What N1MM Logger sends for a frequency in tens of hertz.
    void tune(long tensOfHertz) {
        udp.send(12060, "<RadioInfo><RadioNr>1</RadioNr><TXFreq>" + std::to_string(tensOfHertz) +
                            "</TXFreq></RadioInfo>");
    }
    void poll() { clock.advance(form::Form1::kPollMilliseconds); }
};
