#pragma once

#include "app/functions.h"
#include "config/named_configurations.h"
#include "engine/position.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace app {

/// Takes back, and makes again, what the user did to positions, memories, function and configuration. Each
/// side of a step counts the motors' steps that have been made since, so that the positions stay true.
class Undo {
  public:
    Undo(form::Form1& form, engine::Motion& motion, engine::PositionEntry& entry, memory::MemorySlots& slots,
         Functions& functions, config::NamedConfigurations& configurations);

    /// How many changes can be undone.
    std::size_t changes() const { return undo_.size(); }
    /// Call after each event: a step whose units have changed can no longer be counted, and is dropped.
    void look();
    /// The running state that a configuration's file does not hold yet.
    std::function<std::vector<config::Record>()> runningState;

  private:
    static constexpr std::size_t kMost = 100;
    static constexpr std::size_t kEngines = 2;

    /// What a position counts in.
    struct Units {
        float sngMMGiro = 0;
        int intSteps = 0, bytMolt = 0;
        bool operator==(const Units&) const = default;
    };
    using AllUnits = std::array<Units, kEngines>;
    /// Where the engines stand, and as what.
    struct Standing {
        int function = 0;
        std::array<float, kEngines> tuner{}, rotor{};
        std::array<std::string, kEngines> inUse{};
        std::array<std::int64_t, kEngines> halfSteps{};
        std::array<double, kEngines> halfStep{}; // units of one
    };
    struct Step {
        std::string what; // "New Value of Engine 1"
        std::function<void(bool back)> go;
        std::array<bool, kEngines> counts{}; // the engines whose steps it counts
        AllUnits units{};                    // at that time
        bool loads = false;                  // another configuration, with units of its own
    };

    void add(Step step);
    void change(const std::function<void()>& body);
    void declared(const engine::Side& side, float before, const std::string& what);
    void stored(int n, const memory::Contents& before, const std::string& what);
    void functionChosen(int function);
    void loading(const config::Configuration& before, const std::function<void()>& use);
    void go(std::vector<Step>& from, std::vector<Step>& to, bool back);
    void dropUncounted(std::vector<Step>& steps, std::vector<std::string>& dropped) const;
    void show();
    AllUnits units() const;
    Standing standing() const;
    void restore(const Standing& standing);

    form::Form1& form_;
    memory::MemorySlots& slots_;
    Functions& functions_;
    config::NamedConfigurations& configurations_;
    engine::Sides sides_;
    std::vector<Step> undo_, redo_;
    AllUnits units_{};
    bool changing_ = false; // a step is being made: the units are not those of the steps yet
};

} // namespace app
