#include "ui/outputs_view.h"

#include <QShortcut>

namespace ui {

namespace {
constexpr int kLeastSlider = 8 * kGrid;
} // namespace

OutputsView::OutputsView(form::Form1& form, Adapters& adapters)
    : Card("Outputs", "The outputs to the coils of both engines.") {
    QHBoxLayout* line = row();
    line->setSpacing(2 * kGrid);
    QBoxLayout* lines = foldingRow();
    lines->setSpacing(2 * kGrid);
    lines->addLayout(line, 2);
    line->addWidget(groupTitle(accessibleName(), toolTip()));
    PushButton* off = adapters.button(
        form.cmdOff,
        {"Outputs off", "Switches all coils off, so that they stay cool. Not while an engine runs.", "F12"});
    auto* shortcut = new QShortcut(QKeySequence(Qt::Key_F12), off);
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, off, &QPushButton::click);
    line->addWidget(adapters.lamp(
        form.shpCoils, {"Coils", "Glows while a coil of either engine is energised: the motor gets warm."}));
    off->guardSpace();
    line->addWidget(off);
    CaptionLabel* offIn = adapters.label(
        form.lblOffIn, {"Outputs off in", "The time until the outputs go off."}, "off in 32 s");
    offIn->setTone(CaptionLabel::Tone::Quiet);
    line->addWidget(divider());

    line->addWidget(adapters.checkBox(
        form.chkAutoCmdOff,
        {"Automatic outputs off",
         "Switches the outputs off when engines and frequency have rested for the time beside it.",
         "Alt+A"}));
    const QString tip = "Seconds of rest after which the outputs go off.";
    QHBoxLayout* time = row();
    time->addWidget(fixedText("Time Out Off", tip));
    Slider* seconds = adapters.scrollBar(form.hScrCmdOff, {"Time out", tip, "Left and Right"});
    seconds->setMinimumWidth(kLeastSlider);
    time->addWidget(seconds, 1);
    CaptionLabel* value = adapters.label(form.lblAutoCmdOff, {"Time out, value", tip}, "00");
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    time->addWidget(value);
    time->addWidget(fixedText("Sec.", tip));
    line->addLayout(time, 2);
    QHBoxLayout* usb = row();
    usb->setSpacing(2 * kGrid);
    lines->addLayout(usb);
    usb->addWidget(adapters.checkBox(
        form.chkUsbOn, {"USB board", "Ticked, the coils are driven through the USB board too.", "Space"},
        "USB Off|USB On"));
    usb->addWidget(adapters.label(form.lblUsb, {"State of the USB board", "State of the USB board."},
                                  "USB Card 0 disconnected"));
    usb->addStretch(1);
    usb->addWidget(offIn);
    body().addLayout(lines);
    layOutRamp(form, adapters);
}

void OutputsView::layOutRamp(form::Form1& form, Adapters& adapters) {
    const QString tip =
        "The time from slow to fast and back, in units of 20 ms; 0: the speeds change at once.";
    QHBoxLayout* line = row();
    line->addWidget(fixedText("Ramp (20 ms)", tip));
    Slider* bar = adapters.scrollBar(form.HScroll1, {"Ramp", tip, "Left and Right"});
    bar->setMinimumWidth(kLeastSlider);
    line->addWidget(bar, 1);
    CaptionLabel* value = adapters.label(form.lblAccCurve, {"Ramp, value", tip}, "000");
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    line->addWidget(value);
    CaptionLabel* runs = adapters.label(form.lblRuns, {"Time of the ramp", tip}, "No ramp");
    runs->setTone(CaptionLabel::Tone::Quiet);
    line->addWidget(runs);
    body().addLayout(line);
}

} // namespace ui
