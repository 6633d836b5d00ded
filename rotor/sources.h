#pragma once

#include "form/form1.h"
#include "rotor/direction.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace rotor {

/// How long the last target of a source holds.
enum class Hold {
    kWhileHeard, // until the source has sent nothing whole for the silence time
    kWhileThere, // as long as its link is open: it sends changes alone
    kUntilDone, // to its end, though the source has gone; another source may take over after the silence time
};

/// A program that says where the antenna is to point; all clients of one protocol together are one.
class TrackingSource {
  public:
    virtual ~TrackingSource() = default;
    /// What the window calls it: "Orbitron", "rotctld".
    virtual std::string name() const = 0;
    /// Whether targets can come from it: a link is open, a client is connected.
    virtual bool there() const = 0;
    virtual Hold hold() const = 0;
};

/// A source that is another class's to feed.
class NamedSource : public TrackingSource {
  public:
    NamedSource(std::string name, Hold hold, std::function<bool()> there)
        : name_(std::move(name)), hold_(hold), there_(std::move(there)) {}
    std::string name() const override { return name_; }
    bool there() const override { return there_(); }
    Hold hold() const override { return hold_; }

  private:
    std::string name_;
    Hold hold_;
    std::function<bool()> there_;
};

/// All tracking sources, and which one of them holds the target: the first, until it is silent. Time passes
/// only by `pass`.
class Sources {
  public:
    using Time = std::chrono::milliseconds;
    static constexpr Time kSilence{10'000};

    explicit Sources(form::Form1& form) : form_(form) {}

    /// A source that lives as long as this object.
    void add(const TrackingSource& source) { all_.push_back(&source); }
    bool anyThere() const;

    /// Whether a target of this source would be taken now.
    bool free(const TrackingSource& source) const;
    /// The labels lblAzRx and lblElRx hold a whole new target of this source, offsets added: they show what
    /// came last, from whomever. It is taken where the target is free; nothing comes from a text that is no
    /// number.
    void complete(const TrackingSource& source);
    /// A target as the source words it, degrees: the offsets are added and the labels set. False, and nothing
    /// set, when another source holds the target. Throws runtime::RunTimeError for a text that is no number.
    bool offer(const TrackingSource& source, const std::string& azimuth, const std::string& elevation);
    /// The source said something whole that is no target; silence counts from here.
    void heard(const TrackingSource& source);
    /// The source takes its target back, or is shut down.
    void drop(const TrackingSource& source);
    /// Nobody has a target any longer: the user has stopped the antenna, or the function has ended.
    void forget();

    /// Who holds the target; null for nobody.
    const TrackingSource* holder() const { return holder_; }
    /// The target, offsets added, while its source is not silent.
    const std::optional<Direction>& target() const { return target_; }
    /// The last holder fell silent, and no target has come since.
    bool lost() const { return lost_; }

    void setSilence(Time silence) { silence_ = silence; }
    /// So much time has gone by.
    void pass(Time time);

    /// A whole new target has been taken.
    std::function<void()> onTarget;

  private:
    bool silent() const;

    form::Form1& form_;
    std::vector<const TrackingSource*> all_;
    const TrackingSource* holder_ = nullptr;
    std::optional<Direction> target_;
    Time sinceHeard_{};
    Time silence_ = kSilence;
    bool lost_ = false;
};

} // namespace rotor
