#pragma once

#include "engine/output_ports.h"
#include "engine/side.h"
#include "form/timer.h"

#include <functional>
#include <string>

namespace engine {

/// Energises the four coils of an engine one after the other, slowly, so that a user can check the wiring.
/// The engine's position does not change, although its rotor may twitch.
class CoilCheck {
  public:
    static constexpr int kMillisecondsPerCoil = 800;

    /// Nothing else may use `timer`.
    CoilCheck(form::Form1& form, OutputPorts& outputs, form::Timer& timer);

    /// Energises the coils of engine 1 or 2 in turn, so many times round, once the outputs are ready. Ends a
    /// running test first. Precondition: no engine is running.
    void start(int motor, int rounds = 1, int millisecondsPerCoil = kMillisecondsPerCoil);
    /// Ends the test and switches all coils off. Does nothing if no test is running.
    void stop();
    bool running() const { return timer_.Enabled; }

    /// Called with the number of the energised coil, 1 to 4, and with 0 when the test is over.
    std::function<void(int coil)> onCoil;
    /// Called with the reason while the test waits for the outputs.
    std::function<void(const std::string& why)> onWait;

  private:
    void next();
    void light();
    void end();

    OutputPorts& outputs_;
    form::Timer& timer_;
    Sides sides_;
    const Side* side_ = nullptr;
    int coil_ = 0;   // the energised one; 0 while the test waits for the outputs
    int rounds_ = 0; // to go, with the one under way
};

} // namespace engine
