#pragma once

#include "engine/motion.h"
#include "engine/output_ports.h"
#include "engine/side.h"
#include "form/form1.h"
#include "rotor/follower.h"
#include "rotor/rotor_commands.h"
#include "rotor/rotor_settings.h"
#include "rotor/sources.h"

#include <array>
#include <optional>
#include <string>

namespace rotor {

/// Turns the antenna in Satellite Rotor: it follows the target, parks, points where the user says, keeps the
/// machine inside its range, and switches the coils off. What to do is decided by Follower; here it is
/// carried out.
class Rotor : public RotorCommands {
  public:
    Rotor(form::Form1& form, engine::Motion& motion, engine::OutputPorts& outputs, Sources& sources);

    const RotorSettings& settings() const { return settings_; }
    void use(const RotorSettings& settings);
    /// Satellite Rotor is switched on.
    void enter();
    /// Another function is, or the program ends.
    void leave();

    /// The user has pressed a Stop, or an error has come up: the antenna stands, and is not followed any
    /// more.
    void stopFollowing();
    /// Whether a step upwards, or downwards, would leave the machine's range. Part of every motion.
    bool isBlocked(const engine::Side& side, bool up) const;

    void tmrDispRefr_Timer();
    /// Looks at both axes and the target, so much time after the last look.
    void subSat(Sources::Time time);
    void chkRotOnOff_Click();
    void cmdPark_Click();
    void cmdPoint_Click();
    void skyPressed(const Direction& wanted);
    void cmdCalibrate_Click();
    void cmdUndoCalibrate_Click();

    Direction position() const override;
    bool following() const override { return form_.chkRotOnOff.ticked(); }
    void turn(Axis axis, int direction, bool fast) override;
    void halt() override;
    void park() override;

  private:
    /// A place of the machine to which the antenna turns without following.
    struct Goal {
        Direction place;
        bool parking;
    };

    bool isOn() const { return form_.tmrDispRefr.Enabled; }
    void targetCame();
    void goOnToGoal();
    /// Returns whether the axis is on its way. Says once that an axis cannot start.
    bool carryOut(const engine::Side& side, const Order& order);
    void stopReleasedJogs();
    void letGoOfUsersMotion();
    void parkAfterPass();
    void restCoils(Sources::Time time);
    void setPosition(const Direction& position);
    void startTurning(const Goal& goal);

    void show();
    void showPlan();
    std::string stateText() const;
    std::string toGoText() const;
    std::optional<Direction> destination() const;

    Follower::Axes axes() const;
    Machine machine() const;
    Follower::Settings followerSettings() const;

    form::Form1& form_;
    engine::Motion& motion_;
    engine::OutputPorts& outputs_;
    Sources& sources_;
    engine::Sides sides_;
    RotorSettings settings_;
    Follower follower_;
    std::optional<Goal> goal_;
    std::array<bool, 2> refuses_{}; // of both axes: it cannot start, which has been said
    Direction calibrated_;          // by how much
    bool passRose_ = false;         // the target has been high in the pass that is followed
    double lastElevation_ = 0;      // of the target
    bool clientTurns_ = false;      // a program elsewhere turns an axis by hand
    bool parked_ = false;           // where nothing has moved since
    bool moved_ = false;            // since Satellite Rotor began
    int steps_ = 0;                 // of both engines, at the last look
    bool coilsRest_ = false;        // switched off here; the next step switches them on
    Sources::Time standing_{};
};

} // namespace rotor
