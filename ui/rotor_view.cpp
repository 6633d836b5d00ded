#include "ui/rotor_view.h"

#include <QGridLayout>

namespace ui {

namespace {

constexpr double kRawSize = 0.9;
constexpr const char* kScrollKeys = "Left and Right";

struct Threshold {
    form::ScrollBar& bar;
    form::Label& value;
    const char* name;
    const char* tip;
};

QLayout* slider(Adapters& adapters, form::ScrollBar& bar, form::Label& value, CaptionLabel* name,
                const Words& words, const char* samples) {
    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(kGrid);
    grid->setVerticalSpacing(0);
    Words valueWords{words.name + ", value", words.tip, {}};
    CaptionLabel* number = adapters.label(value, valueWords, samples);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(name, 0, 0);
    grid->addWidget(number, 0, 1);
    grid->addWidget(adapters.scrollBar(bar, words), 1, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    return grid;
}

} // namespace

RotorView::RotorView(form::Form1& form, Adapters& adapters)
    : Card("Satellite", "The satellite, and how the rotor follows it.") {
    adapters.frame(form.framSat, *this);
    QHBoxLayout* heading = row();
    heading->addWidget(groupTitle(accessibleName(), toolTip()));
    heading->addStretch(1);
    layOutLinks(*heading, form, adapters);
    body().addLayout(heading);
    layOutFollowing(form, adapters);

    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(3 * kGrid);
    grid->setVerticalSpacing(kGrid);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);

    const auto offset = [&](form::ScrollBar& bar, form::Label& value, form::Label& name,
                            const QString& axis) {
        const QString tip = "Degrees that are added to the received " + axis + ".";
        CaptionLabel* caption =
            adapters.label(name, {"Name of the " + axis + " offset", tip}, shown(name.Caption));
        caption->setTone(CaptionLabel::Tone::Quiet);
        return slider(adapters, bar, value, caption, {axis + " offset", tip, kScrollKeys}, "-000.00");
    };
    grid->addLayout(offset(form.HScOffsetA, form.lblOffsetA, form.lblOffsetName, "azimuth"), 0, 0);
    grid->addLayout(offset(form.HScOffsetB, form.lblOffsetB, form.lblOffsetnameb, "elevation"), 0, 1);

    const Threshold thresholds[] = {
        {form.HScroll2, form.lblHiSpOnAz, "Fast above, azimuth (°)",
         "The error in azimuth, in degrees, above which the rotor turns fast; 0: always."},
        {form.HScroll4, form.lblHiSpOnEL, "Fast above, elevation (°)",
         "The error in elevation, in degrees, above which the rotor turns fast; 0: always."},
        {form.HScroll6, form.lblAutoRStAz, "Restart, azimuth (0.1°)",
         "The error in azimuth, in tenths of a degree, at which a resting rotor starts; 0: one step."},
        {form.HScroll5, form.lblAutoRStEl, "Restart, elevation (0.1°)",
         "The error in elevation, in tenths of a degree, at which a resting rotor starts; 0: one step."},
        {form.HScroll3, form.lblAntiRipEl, "Anti-ripple, elevation (0.1°)",
         "Added to the restart when elevation has to turn back, in tenths of a degree: prevents hunting."},
    };
    int place = 0;
    for (const Threshold& threshold : thresholds) {
        CaptionLabel* name = fixedText(threshold.name, threshold.tip);
        grid->addLayout(slider(adapters, threshold.bar, threshold.value, name,
                               {threshold.name, threshold.tip, kScrollKeys}, "0000"),
                        1 + place / 2, place % 2);
        ++place;
    }
    body().addLayout(grid, 1);
    CaptionLabel* rotctld = adapters.label(
        form.lblRotctld,
        {"rotctld", "Where Gpredict and other rotctld programs connect. Set in Hardware and Links."},
        "rotctld 192.168.100.100:45330, 16 clients");
    rotctld->setTone(CaptionLabel::Tone::Quiet);
    body().addWidget(rotctld, 0, Qt::AlignLeft);
}

void RotorView::layOutFollowing(form::Form1& form, Adapters& adapters) {
    QHBoxLayout* state = row();
    state->addWidget(adapters.checkBox(
        form.chkRotOnOff,
        {"Follow", "The antenna follows the target, until you press Stop. Grey: nothing sends targets.",
         "Space"}));
    state->addWidget(adapters.label(form.lblSource,
                                    {"Source of the target", "The program that sends the target."},
                                    "Target: tracking server"));
    state->addWidget(
        adapters.label(form.lblRotorState,
                       {"State of the antenna", "What the antenna does now, and how long it takes."},
                       "Follows: 359.99° and 179.99° to go, 999 s"),
        1);
    body().addLayout(state);

    QHBoxLayout* commands = row();
    const auto button = [&](form::Button& control, const char* name, const char* tip) {
        PushButton* widget = adapters.button(control, {name, tip, "Space"});
        widget->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        commands->addWidget(widget);
    };
    button(form.cmdPark, "Park", "Unticks Follow and turns the antenna to its parking place.");
    commands->addStretch(1);
    const QString place = "The direction to turn to, in degrees. A click in the sky plot does the same.";
    commands->addWidget(fixedText("Point to", place));
    commands->addWidget(
        adapters.textBox(form.txtPointAz, {"Azimuth to point to", place, "Enter turns"}, "000.00"));
    commands->addWidget(
        adapters.textBox(form.txtPointEl, {"Elevation to point to", place, "Enter turns"}, "000.00"));
    button(form.cmdPoint, "Point", "Turns the antenna there, while Follow is not ticked.");
    commands->addStretch(1);
    button(
        form.cmdCalibrate, "Calibrate",
        "Press when the antenna really points at the target (the Sun, a beacon): sets its position to that.");
    button(form.cmdUndoCalibrate, "Undo the calibration", "Takes the last calibration back.");
    body().addLayout(commands);
}

void RotorView::layOutLinks(QBoxLayout& line, form::Form1& form, Adapters& adapters) {
    const auto raw = [&](form::Label& control, const QString& what) {
        const QString tip = "The " + what + " as it came in, before the offset.";
        CaptionLabel* label = adapters.label(control, {"Raw " + what, tip}, "000.00");
        label->setFont(scaledFont(label->font(), kRawSize));
        label->setTone(CaptionLabel::Tone::Quiet);
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        return label;
    };
    line.addWidget(raw(form.lblRealAz, "azimuth"));
    line.addWidget(raw(form.lblRealEl, "elevation"));
    CaptionLabel* state =
        adapters.label(form.lblOpenCom,
                       {"State of the tracking link", "Whether the tracking program or server is connected."},
                       "MDisconnectedM|MSolving NameM|MClosing PeerM");
    state->setAlignment(Qt::AlignCenter);
    line.addWidget(state);
    line.addWidget(fixedText("Orbitron", "The link to Orbitron."));
    PushButton* orbitron = adapters.button(
        form.cmdConnect,
        {"Connect Orbitron", "Opens or closes the link to Orbitron (0: closed, I: open).", "Space"}, "MM");
    orbitron->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    line.addWidget(orbitron);
    line.addWidget(
        adapters.checkBox(form.chkOpenCom, {"Connect SatPC32", "Opens the link to SatPC32.", "Space"}));
}

} // namespace ui
