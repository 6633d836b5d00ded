#pragma once

#include "form/form1.h"
#include "rotor/rotctld_protocol.h"
#include "rotor/rotor_commands.h"
#include "rotor/sources.h"

#include <functional>
#include <string>

namespace rotor::rotctld {

/// All clients of the protocol, as one source of targets and one hand on the rotor.
class Source : public TrackingSource, public Rotator {
  public:
    /// `version` is the program's.
    Source(form::Form1& form, Sources& sources, RotorCommands& commands, std::string version);

    /// Whether a client is connected.
    std::function<bool()> clientThere;

    std::string name() const override { return "rotctld"; }
    /// A client may have gone and its target be on its way.
    bool there() const override { return sources_.holder() == this || (clientThere && clientThere()); }
    Hold hold() const override { return Hold::kUntilDone; }

    Direction position() const override;
    std::string version() const override { return version_; }
    Result point(const Direction& target) override;
    Result move(Axis axis, int direction, bool fast) override;
    Result stop() override;
    Result park() override;
    void endMove() override;
    void heard() override { sources_.heard(*this); }

  private:
    /// Whether a client may turn the antenna by other means than a target.
    bool mayTurn() const;
    /// What a client said before no longer holds.
    void forget();

    form::Form1& form_;
    Sources& sources_;
    RotorCommands& commands_;
    std::string version_;
    bool moving_ = false; // a move is under way, as far as no user has ended it
};

} // namespace rotor::rotctld
