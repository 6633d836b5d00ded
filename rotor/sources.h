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

/// How long the last target of a source stays valid.
enum class Hold {
    kWhileHeard, // until the source has sent no complete message for the silence time
    kWhileThere, // as long as the source's link is open: the source sends only changes
    kUntilDone,  // until it is forgotten, though the source has gone
};

/// A program that sends targets for the antenna. All clients of one protocol together are one source.
class TrackingSource {
  public:
    virtual ~TrackingSource() = default;
    /// The source's name in the window: "Orbitron", "rotctld".
    virtual std::string name() const = 0;
    /// Whether the source can send targets: a link is open or a client is connected.
    virtual bool there() const = 0;
    virtual Hold hold() const = 0;
};

/// A source whose targets another class passes on.
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

/// All tracking sources. One source holds the target: the first to send a target, until it is silent. Time
/// passes only by calls of `pass`.
class Sources {
  public:
    using Time = std::chrono::milliseconds;
    static constexpr Time kSilence{10'000};

    explicit Sources(form::Form1& form) : form_(form) {}

    /// Adds a source; the source must outlive this object.
    void add(const TrackingSource& source) { all_.push_back(&source); }
    bool anyThere() const;

    /// Whether a target from this source would be accepted now.
    bool isFreeFor(const TrackingSource& source) const;
    /// The labels lblAzRx and lblElRx hold a new complete target from this source, offsets added; they show
    /// the last target received from any source. The target is accepted unless another source holds the
    /// target, and ignored if a label is not a number or the
    /// numbers are no direction.
    void complete(const TrackingSource& source);
    /// A target as the source has sent it, in degrees: adds the offsets and sets the labels. Returns false
    /// and sets nothing if another source holds the target. Throws runtime::RunTimeError if a text is not a
    /// number.
    bool offer(const TrackingSource& source, const std::string& azimuth, const std::string& elevation);
    /// The source has sent a complete message that is not a target; the silence time restarts.
    void heard(const TrackingSource& source);
    /// The source withdraws its target, or the source has been shut down.
    void drop(const TrackingSource& source);
    /// Drops the target: the user has stopped the antenna, or the function has ended.
    void forget();

    /// The source that holds the target; null if there is none.
    const TrackingSource* holder() const { return holder_; }
    /// The target, offsets added; empty after its source has fallen silent.
    const std::optional<Direction>& target() const { return target_; }
    /// Whether the last source with a target fell silent and no target has come since.
    bool lost() const { return lost_; }

    void setSilence(Time silence) { silence_ = silence; }
    /// `time` is the time since the last call.
    void pass(Time time);

    /// Called when a new complete target has been accepted.
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
