#include "ui/radio_view.h"

#include <QGridLayout>
#include <QShortcut>
#include <QStackedLayout>

namespace ui {

namespace {

constexpr double kFrequencySize = 2.6;
constexpr double kConnectSize = 1.8;
constexpr double kStateSize = 1.15;

} // namespace

QWidget* pile(std::initializer_list<QWidget*> widgets) {
    auto* place = new QWidget;
    auto* layout = new QStackedLayout(place);
    for (QWidget* widget : widgets) {
        layout->addWidget(widget);
    }
    return place;
}

RadioView::RadioView(form::Form1& form, Adapters& adapters)
    : Card("Radio", "The frequency of the radio, and how the engines follow it.") {
    adapters.frame(form.framTuner, *this);
    QHBoxLayout* heading = row();
    heading->addWidget(groupTitle(accessibleName(), toolTip()));
    heading->addStretch(1);
    CaptionLabel* bandChanged = adapters.label(
        form.lblBandCh, {"Band change", "The radio has changed its band."}, shown(form.lblBandCh.Caption));
    bandChanged->setFont(scaledFont(bandChanged->font(), kStateSize, QFont::DemiBold));
    bandChanged->setTone(CaptionLabel::Tone::Accent);
    QSizePolicy keepsPlace = bandChanged->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    bandChanged->setSizePolicy(keepsPlace);
    heading->addWidget(bandChanged);
    body().addLayout(heading);
    layOutFrequency(form, adapters);
    layOutFit(form, adapters);
    layOutRecall(form, adapters);
}

void RadioView::layOutFrequency(form::Form1& form, Adapters& adapters) {
    const auto frequency = [&](form::Label& control, const char* program, const char* unit) {
        const QString tip = QString("The frequency that %1 reports, in %2.").arg(program, unit);
        CaptionLabel* label =
            adapters.label(control, {QString("Frequency from %1").arg(program), tip}, "144.200.000");
        label->setFont(scaledFont(label->font(), kFrequencySize, QFont::DemiBold));
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter); // beside its unit
        return label;
    };
    QWidget* frequencies = pile({frequency(form.lblFreqRx, "Ham Radio Deluxe", "MHz"),
                                 frequency(form.lblLog32DataM, "Logger32", "MHz"),
                                 frequency(form.lblFreqN1MM, "N1MM Logger", "kHz"),
                                 frequency(form.lblFreqHamlib, "Hamlib", "kHz")});
    PushButton* connect = adapters.button(
        form.cmdAutoMemConn,
        {"Connect the radio",
         "Connects or disconnects the program that reports the frequency (0: not connected, I: connected).",
         "F10"},
        "MMM");
    connect->setFont(scaledFont(connect->font(), kConnectSize, QFont::Bold));
    connect->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    CaptionLabel* state = adapters.label(
        form.lblAutoMemConn,
        {"State of the connection", "State of the connection to the frequency's program."}, "Disconnected");
    auto* shortcut = new QShortcut(QKeySequence(Qt::Key_F10), connect);
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, connect, &QPushButton::click);

    QHBoxLayout* line = row();
    CaptionLabel* note = adapters.label(
        form.lblFreqNote, {"Unit and band", "Unit and band of the frequency, and its age if it is old."},
        "MHz, 160 m, 99 s ago");
    note->setTone(CaptionLabel::Tone::Quiet);
    line->addWidget(frequencies);
    line->addWidget(note);
    line->addStretch(1);
    line->addWidget(connect);
    line->addWidget(state);
    body().addLayout(line, 2);
}

void RadioView::layOutFit(form::Form1& form, Adapters& adapters) {
    CaptionLabel* fit = adapters.label(
        form.lblFit,
        {"Whether the antenna fits", "Whether the antenna fits the frequency, and what it waits for."},
        "Memory 10, 14.020, fits, not recalled|not connected to N1MM Logger: F10");
    fit->setFont(scaledFont(fit->font(), kStateSize, QFont::DemiBold));
    PushButton* goOn =
        adapters.button(form.cmdGoOn, {"Go on", "Goes on with the recall that was stopped.", "Space"});
    goOn->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    QSizePolicy keepsPlace = goOn->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    goOn->setSizePolicy(keepsPlace);
    QHBoxLayout* line = row();
    line->addWidget(fit, 1);
    line->addWidget(goOn);
    body().addLayout(line);
}

void RadioView::layOutRecall(form::Form1& form, Adapters& adapters) {
    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(2 * kGrid);
    grid->setVerticalSpacing(kGrid + kGrid / 2);
    const auto state = [&](form::Label& control, const Words& words, const char* samples) {
        CaptionLabel* label = adapters.label(control, words, samples);
        label->setTone(CaptionLabel::Tone::Quiet);
        return label;
    };
    grid->addWidget(
        adapters.checkBox(form.chkAutoMemOnOff,
                          {"Automatic recall",
                           "Recalls the first memory whose label fits, once the frequency rests.", "Alt+U"}),
        0, 0);
    grid->addWidget(state(form.lblAutoMemOnOff,
                          {"Recall mode", "Whether memories are recalled by the radio or by hand."},
                          "Manual|Semi Auto"),
                    0, 1);
    grid->addWidget(
        adapters.checkBox(form.chkBandMode,
                          {"Band mode", "The labels are bands (40), not frequencies (7.050).", "Alt+B"}),
        0, 3);
    grid->addWidget(
        state(form.lblBandMode,
              {"Meaning of labels", "Whether the labels of the memories are frequencies or bands."},
              "Frequency Mode"),
        0, 4);
    grid->addWidget(
        adapters.checkBox(form.chkExact,
                          {"Exact",
                           "Recalls the memory whose label is nearest to the frequency, within a few kHz.",
                           "Alt+X"}),
        1, 3);
    grid->addWidget(
        adapters.checkBox(form.chkHRM,
                          {"Frequency table",
                           "Positions come from the frequency table, not from the ten memories.", "Alt+T"}),
        1, 4);
    grid->addWidget(
        adapters.checkBox(
            form.chkFastMemory,
            {"Fast memory store",
             "When the outputs go off after a jog, stores the positions in the selected memory.", "Space"}),
        1, 0, 1, 3);

    const QString tip = "A recall runs slowly when its way is shorter than this, in units of the position.";
    QHBoxLayout* slow = row();
    slow->addWidget(fixedText("Slow within", tip));
    slow->addWidget(adapters.scrollBar(form.HScrMemSpeedCh, {"Slow within", tip, "Left and Right"}), 1);
    CaptionLabel* value = adapters.label(form.lblMemSpeedCh, {"Slow within, value", tip}, "0000");
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    slow->addWidget(value);
    grid->addLayout(slow, 2, 0, 1, 5);
    grid->setColumnStretch(2, 1);
    for (int line = 0; line < 3; ++line) {
        grid->setRowStretch(line, 1);
    }
    body().addLayout(grid, 3);
}

} // namespace ui
