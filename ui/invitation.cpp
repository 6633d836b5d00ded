#include "ui/invitation.h"

#include "ui/caption_label.h"
#include "ui/push_button.h"

namespace ui {

namespace {

constexpr double kTitleSize = 1.8, kChoiceSize = 1.4;

QLabel* words(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    return label;
}

PushButton* choice(form::Menu& menu, const QString& caption, const QString& tip) {
    auto* button = new PushButton;
    button->setText(caption);
    button->setObjectName("invite" + QString::fromStdString(menu.name()).mid(3));
    button->setAccessibleName(caption);
    button->setAccessibleDescription(tip);
    button->setToolTip(tip);
    button->setFont(scaledFont(button->font(), kChoiceSize, QFont::DemiBold));
    button->setMinimumHeight(6 * kGrid);
    button->setAutoDefault(true); // Enter presses it
    QObject::connect(button, &QPushButton::clicked, button, [&menu] { menu.Click.fire(); });
    return button;
}

} // namespace

Invitation::Invitation(form::Form1& form)
    : Card("Begin", "Nothing is set up yet: choose a function, or let the assistant lead you.") {
    body().addStretch(1);
    auto* title = new CaptionLabel("What do the two motors turn?");
    title->setFont(scaledFont(title->font(), kTitleSize, QFont::DemiBold));
    title->setAlignment(Qt::AlignCenter);
    body().addWidget(title);
    body().addSpacing(kGrid);

    struct Function {
        form::Menu& menu;
        const char* caption;
        const char* what;
    };
    QHBoxLayout* functions = row();
    functions->setSpacing(2 * kGrid);
    for (const Function& each :
         {Function{form.mnuCoilTuner, "Coil Tuner", "The elements of a coil tuner, in millimetres."},
          Function{form.mnuAmpli, "Tune && Load", "The capacitors of a tuner or an amplifier, in dots."},
          Function{form.mnuSat, "Satellite Rotor", "An antenna in azimuth and elevation, in degrees."}}) {
        auto* column = new QVBoxLayout;
        column->addWidget(choice(each.menu, each.caption, each.what));
        column->addWidget(words(each.what));
        functions->addLayout(column, 1);
    }
    body().addLayout(functions);
    body().addSpacing(3 * kGrid);

    QHBoxLayout* assistant = row();
    assistant->addStretch(1);
    assistant->addWidget(choice(form.mnuAssistant, "Set-up assistant",
                                "Leads through outputs, motors, speeds, positions and connections."),
                         2);
    assistant->addStretch(1);
    body().addLayout(assistant);
    body().addWidget(
        words("It leads through outputs, motors, speeds, positions and connections, page by page.\n"
              "To load a saved configuration: File, Load Config."));
    body().addStretch(2);
}

} // namespace ui
