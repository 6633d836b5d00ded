#include "engine/coil_check.h"

#include "engine/coil_sequence.h"

namespace engine {

CoilCheck::CoilCheck(form::Form1& form, OutputPorts& outputs, form::Timer& timer)
    : outputs_(outputs), timer_(timer), sides_(form) {
    timer_.Tick.attach([this] { next(); });
}

void CoilCheck::start(int motor, int rounds, int millisecondsPerCoil) {
    stop();
    rounds_ = rounds;
    timer_.Interval = millisecondsPerCoil;
    side_ = motor == sides_.a.motor ? &sides_.a : &sides_.b;
    timer_.Enabled = true;
    light();
}

void CoilCheck::stop() {
    if (!running()) return;
    end();
    outputs_.cmdOff_Click();
}

void CoilCheck::next() {
    const bool round = coil_ == kLamps;
    if ((round && --rounds_ == 0) || sides_.anyRunning()) {
        stop();
    } else {
        light();
    }
}

void CoilCheck::light() {
    try {
        if (const std::string why = outputs_.notReady(); !why.empty()) {
            if (onWait) onWait(why);
            return;
        }
        coil_ = coil_ % kLamps + 1;
        outputs_.cmdOff_Click();
        const auto number = static_cast<std::size_t>(coil_ - 1);
        side_->lamps.at(number)->FillColor = form::kRed;
        outputs_.subBitPorta(0, side_->firstOutput - 1 + coil_);
        outputs_.endPattern();
        // A full step's USB value is one coil.
        outputs_.subUsbOnOff(kFullStep.at(number).usb * side_->usbFactor, side_->motor);
    } catch (...) {
        end();
        throw;
    }
    if (onCoil) onCoil(coil_);
}

void CoilCheck::end() {
    timer_.Enabled = false;
    coil_ = 0;
    if (onCoil) onCoil(0);
}

} // namespace engine
