#include "bench/passes/run.h"

#include "config/record_file.h"
#include "config/records.h"
#include "engine/side.h"
#include "tests/simulated_outside.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace passes {

namespace {

using rotor::arc;
using rotor::Direction;

constexpr int kMoment = 20;                              // milliseconds between two looks
constexpr double kStep = 0.045, kSlow = 2.25, kFast = 9; // degrees, degrees per second
constexpr int kRestart = 15, kReverse = 5;               // tenths of a degree, both axes; elevation
constexpr int kFastAbove = 5;                            // degrees

double apart(double a, double b) {
    return std::fabs(std::remainder(a - b, 360));
}

/// Travel and starts of two positions that are looked at again and again.
class Counter {
  public:
    void look(const Direction& now) {
        count(now.azimuth, last_.azimuth, azimuthMoves_);
        count(now.elevation, last_.elevation, elevationMoves_);
        last_ = now;
    }
    Work work;

  private:
    void count(double now, double before, int& moves) {
        // At the slow speed there is a step in each moment, or in the next.
        work.travel += std::fabs(now - before);
        if (now != before && moves == 0) ++work.starts;
        moves = now != before ? kStill : std::max(0, moves - 1);
    }
    static constexpr int kStill = 3; // moments without a step before an axis counts as standing
    Direction last_;
    int azimuthMoves_ = 0, elevationMoves_ = 0;
};

/// Obeys each target at once, at the fast speed, within 0 to 360 and 0 to 90 degrees.
class PlainFollower {
  public:
    void target(const Direction& target) {
        target_ = {target.azimuth, std::clamp(target.elevation, 0.0, 90.0)};
    }
    const Direction& move() {
        const double most = kFast * kMoment / 1000;
        place_.azimuth += std::clamp(target_.azimuth - place_.azimuth, -most, most);
        place_.elevation += std::clamp(target_.elevation - place_.elevation, -most, most);
        return place_;
    }

  private:
    Direction target_, place_;
};

/// Holds the claim against what happens, and lists by reason the moments beyond the bound of which it does
/// not speak.
class Judge {
  public:
    explicit Judge(Result& result) : result_(result) {}

    void target(const Direction& target) {
        if (known_) {
            drift_ = {apart(target.azimuth, target_.azimuth),
                      std::fabs(target.elevation - target_.elevation)};
            refresh_ = arc(target, target_);
        } else {
            drift_ = {};
            refresh_ = 0;
            underWay_ = "start of a pass";
        }
        target_ = target;
        known_ = true;
    }
    void silent() { known_ = false; }
    const Direction& target() const { return target_; }

    void look(form::Form1& form) {
        if (!known_ || target_.elevation < 0) return;
        const auto& goal = form.plan.goal;
        const Direction antenna{form.sngPosAz, form.sngPosEl};
        const bool drifts = drift_.azimuth >= kSlow || drift_.elevation >= kSlow;
        const bool atEnd = form.lblRotorState.Caption.get().starts_with("Waits at the end");
        if (goal && goal_ && std::fabs(goal->azimuth - goal_->azimuth) > 90) underWay_ = "turn-round";
        goal_ = goal;

        const double distance = arc(target_, antenna);
        const double bound = std::hypot(kRestart / 10.0, (kRestart + kReverse) / 10.0) + refresh_ + kStep;
        if (distance <= bound) {
            if (distance > result_.furthest) {
                result_.furthest = distance;
                result_.bound = bound;
            }
            // Near the zenith a turn that is under way is near its target all the time.
            const bool turns = goal && std::fabs(goal->azimuth - antenna.azimuth) > kFastAbove;
            if (!turns && !atEnd) underWay_.clear();
            return;
        }
        // An antenna that stands beyond the bound is on no way.
        if (!engine::Sides(form).anyRunning() && !atEnd) underWay_.clear();
        const std::string reason = drifts ? "drifts faster than slow" : atEnd ? "waits at an end" : underWay_;
        if (reason.empty()) {
            ++result_.broken;
        } else {
            result_.excused[reason] += kMoment / 1000.0;
        }
    }

  private:
    Result& result_;
    Direction target_, drift_;
    double refresh_ = 0;
    bool known_ = false;
    std::optional<Direction> goal_;
    std::string underWay_; // what the antenna is about, until it is within the bound
};

std::string lineOf(const Direction& target) {
    return "SAT 0 0 " + std::to_string(target.azimuth) + " " + std::to_string(target.elevation) + "\n";
}

/// The program in Satellite Rotor.
class Station : public SimulatedOutside {
  public:
    explicit Station(const Rotator& rotator) {
        namespace record = config::record;
        config::RecordFile file(storage, kFolder / "save.cfg");
        file.write({config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 9),
                    config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 9),
                    config::integerRecord(record::kFastA, 200), config::integerRecord(record::kSlowA, 50),
                    config::integerRecord(record::kFastB, 200), config::integerRecord(record::kSlowB, 50),
                    config::integerRecord(record::kTrackingProgram, 2),
                    config::integerRecord(record::kFunction, form::kSatelliteRotor)});
        settings.sections["rotor"] = {{"azimuth", rotator.azimuth}, {"elevation", rotator.elevation}};
        tcp.listen(6969);
        controller_ = std::make_unique<app::Controller>(ports(), kFolder);
        controller_->start();
        tcp.answer();
        clock.advance(1000);
        form().HScroll6.set(kRestart);
        form().HScroll5.set(kRestart);
        form().HScroll3.set(kReverse);
        form().HScroll2.set(kFastAbove);
        form().HScroll4.set(kFastAbove);
        form().HScroll1.set(rotator.ramp);
        form().chkRotOnOff.userClick();
    }
    form::Form1& form() { return controller_->form(); }

  private:
    inline static const std::filesystem::path kFolder = "station"; // in memory
    std::unique_ptr<app::Controller> controller_;
};

} // namespace

const std::vector<Rotator> kRotators = {{"360°", "0..360", "0..90", 0},
                                        {"450°", "-90..360", "0..90", 0},
                                        {"450°, ramp", "-90..360", "0..90", 20},
                                        {"360°, elevation 180°", "0..360", "0..180", 0}};

Result run(const Pass& pass, const Rotator& rotator) {
    Result result;
    Station station(rotator);
    Judge judge(result);
    PlainFollower plain;
    Counter programWork, plainWork;
    const int seconds = static_cast<int>(2 * halfLength(pass));
    for (int second = 0; second <= seconds; ++second) {
        if (const auto target = received(pass, second)) {
            station.tcp.send(lineOf(*target));
            judge.target(*target);
            plain.target(*target);
        } else {
            judge.silent();
        }
        Direction antenna, plainPlace;
        for (int moment = 0; moment < 1000 / kMoment; ++moment) {
            judge.look(station.form());
            station.clock.advance(kMoment);
            antenna = {station.form().sngPosAz, station.form().sngPosEl};
            programWork.look(antenna);
            plainPlace = plain.move();
            plainWork.look(plainPlace);
        }
        result.samples.push_back({static_cast<double>(second), judge.target(), antenna, plainPlace});
    }
    result.program = programWork.work;
    result.plain = plainWork.work;
    return result;
}

} // namespace passes
