#include "app/undo.h"

#include "runtime/errors.h"
#include "runtime/number.h"

#include <memory>
#include <utility>

namespace app {

namespace {

/// Units of half a full step; 0 if the engine cannot step.
double halfStepOf(const engine::Side& side) {
    constexpr int kHalfStepsOfFull = 2;
    const int halfSteps = side.intSteps.value() * kHalfStepsOfFull;
    return halfSteps == 0 ? 0 : double{side.sngMMGiro} / halfSteps;
}

/// `position` as of `then` half steps, with the steps made since. Without a step exactly the same.
float withSteps(float position, const engine::Side& side, std::int64_t then, double halfStep) {
    return runtime::toSingle(position + static_cast<double>(side.halfSteps - then) * halfStep);
}

} // namespace

Undo::Undo(form::Form1& form, engine::Motion& motion, engine::PositionEntry& entry,
           memory::MemorySlots& slots, Functions& functions, config::NamedConfigurations& configurations)
    : form_(form), slots_(slots), functions_(functions), configurations_(configurations), sides_(form) {
    motion.onReset = [this](const engine::Side& side, float before) {
        declared(side, before, side.cmdReset.Caption);
    };
    entry.onDeclared = [this](const engine::Side& side, float before) {
        declared(side, before, "New Value of " + side.lblEngine.Caption.get());
    };
    slots_.onChange = [this](int n, const memory::Contents& before, const std::string& what) {
        stored(n, before, what);
    };
    functions_.onChoice = [this](int function) { functionChosen(function); };
    configurations_.onLoad = [this](const auto& before, const auto& use) { loading(before, use); };
    form_.mnuUndo.Click.attach([this] { go(undo_, redo_, true); });
    form_.mnuRedo.Click.attach([this] { go(redo_, undo_, false); });
}

Undo::AllUnits Undo::units() const {
    const auto of = [](const engine::Side& side) {
        return Units{side.sngMMGiro, side.intSteps.value(), side.bytMolt.value()};
    };
    return {of(sides_.a), of(sides_.b)};
}

void Undo::add(Step step) {
    step.units = units();
    form_.notice.tell(step.what + ": Ctrl+Z takes it back");
    undo_.push_back(std::move(step));
    if (undo_.size() > kMost) undo_.erase(undo_.begin());
    redo_.clear();
    show();
}

void Undo::change(const std::function<void()>& body) {
    struct Changing {
        explicit Changing(bool& flag) : flag_(flag) { flag_ = true; }
        Changing(const Changing&) = delete;
        Changing& operator=(const Changing&) = delete;
        ~Changing() { flag_ = false; }
        bool& flag_;
    };
    const Changing changing(changing_);
    body();
}

void Undo::show() {
    const auto name = [](form::Menu& menu, const char* caption, const std::vector<Step>& steps) {
        menu.Enabled = !steps.empty();
        std::string what = steps.empty() ? std::string() : steps.back().what;
        // In a menu "&" marks a key.
        for (std::size_t at = what.find('&'); at != std::string::npos; at = what.find('&', at + 2))
            what.insert(at, "&");
        menu.Caption = caption + (what.empty() ? "" : ": " + what);
    };
    name(form_.mnuUndo, "&Undo", undo_);
    name(form_.mnuRedo, "&Redo", redo_);
}

void Undo::declared(const engine::Side& side, float before, const std::string& what) {
    float& position = form_.intFunzione == form::kSatelliteRotor ? side.sngPosRotor : side.sngPos;
    const auto go = [this, &side, &position, before, after = position, then = side.halfSteps](bool back) {
        position = withSteps(back ? before : after, side, then, halfStepOf(side));
        engine::showPosition(form_, side);
    };
    const bool a = side.motor == sides_.a.motor;
    add({.what = what, .go = go, .counts = {a, !a}});
}

void Undo::stored(int n, const memory::Contents& before, const std::string& what) {
    const memory::Contents after = slots_.contents(n);
    add({.what = what, .go = [this, n, before, after](bool back) { slots_.put(n, back ? before : after); }});
}

void Undo::functionChosen(int function) {
    if (form_.intFunzione == form::kNoFunction) return; // the first one begins everything
    // Of both sides, the state in which it was left last.
    const auto before = std::make_shared<Standing>(standing());
    const auto after = std::make_shared<Standing>();
    add({.what = "Function " + Functions::nameOf(function),
         .go =
             [this, before, after](bool back) {
                 Standing now = standing();
                 const Standing& to = back ? *before : *after;
                 functions_.switchOn(to.function);
                 restore(to);
                 (back ? *after : *before) = std::move(now);
             },
         .counts = {true, true}});
}

void Undo::loading(const config::Configuration& before, const std::function<void()>& use) {
    struct Whole {
        config::Configuration configuration;
        std::vector<config::Record> state;
        Standing standing;
    };
    const auto whole = [this](config::Configuration configuration) {
        return Whole{std::move(configuration), runningState(), standing()};
    };
    const auto other = std::make_shared<Whole>(whole(before));
    const auto go = [this, whole, other](bool /*back*/) {
        Whole now = whole(configurations_.present());
        configurations_.use(other->configuration, other->state);
        restore(other->standing);
        *other = std::move(now);
    };
    change([&] {
        use();
        add({.what = "Load Config", .go = go, .loads = true});
    });
}

Undo::Standing Undo::standing() const {
    Standing standing{.function = form_.intFunzione.value()};
    std::size_t i = 0;
    for (const engine::Side* side : {&sides_.a, &sides_.b}) {
        standing.tuner.at(i) = side->sngPos;
        standing.rotor.at(i) = side->sngPosRotor;
        standing.inUse.at(i) = side->lblUso.Caption;
        standing.halfSteps.at(i) = side->halfSteps;
        standing.halfStep.at(i) = halfStepOf(*side);
        ++i;
    }
    return standing;
}

void Undo::restore(const Standing& standing) {
    // The steps made since belong to the positions of that function; the others did not count them.
    const bool rotor = standing.function == form::kSatelliteRotor;
    std::size_t i = 0;
    for (const engine::Side* side : {&sides_.a, &sides_.b}) {
        const auto place = [&](float position, bool counts) {
            const std::int64_t then = counts ? standing.halfSteps.at(i) : side->halfSteps;
            return withSteps(position, *side, then, standing.halfStep.at(i));
        };
        side->sngPos = place(standing.tuner.at(i), !rotor);
        side->sngPosRotor = place(standing.rotor.at(i), rotor);
        side->lblUso.Caption = standing.inUse.at(i);
        engine::showPosition(form_, *side);
        ++i;
    }
}

void Undo::go(std::vector<Step>& from, std::vector<Step>& to, bool back) {
    if (from.empty()) return;
    if (sides_.anyRunning()) {
        form_.notice.tell("An engine runs: stop it first, then undo");
        return;
    }
    const Step step = from.back();
    try {
        change([&] {
            step.go(back);
            from.pop_back();
            to.push_back(step);
        });
    } catch (const runtime::FileError& error) {
        form_.notice.tell("Not done: " + std::string(error.what()));
        return;
    }
    show();
    form_.notice.tell((back ? "Taken back: " : "Made again: ") + step.what);
}

void Undo::look() {
    if (changing_ || std::exchange(units_, units()) == units_) return;
    std::vector<std::string> dropped;
    dropUncounted(undo_, dropped);
    dropUncounted(redo_, dropped);
    if (dropped.empty()) return;
    show();
    form_.notice.tell(dropped.size() == 1 ? "Units or step mode have changed; this stays: " + dropped.front()
                                          : "Units or step mode have changed; " +
                                                std::to_string(dropped.size()) + " changes stay");
}

void Undo::dropUncounted(std::vector<Step>& steps, std::vector<std::string>& dropped) const {
    const AllUnits now = units();
    for (std::size_t i = steps.size(); i-- > 0 && !steps[i].loads;) {
        const Step& step = steps[i];
        bool counted = true;
        for (std::size_t engine = 0; engine < kEngines; ++engine)
            counted = counted && (!step.counts.at(engine) || step.units.at(engine) == now.at(engine));
        if (counted) continue;
        dropped.push_back(step.what);
        steps.erase(steps.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

} // namespace app
