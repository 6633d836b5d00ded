#include "ui/card.h"
#include "ui/dialogs.h"

#include <QApplication>
#include <QStyle>

namespace ui {

namespace {
constexpr double kEntrySize = 2.2;
constexpr double kTitleSize = 2.0;
constexpr int kIconSize = 8 * kGrid;
} // namespace

void layOut(Dialog& window, form::FrmInsPosition& form) {
    Adapters& adapters = window.adapters();
    QVBoxLayout* all = window.column();
    all->setSpacing(kGrid);
    CaptionLabel* title = adapters.label(form.Label1, {"New value of", "The position that gets a new value."},
                                         "Tune Value|Load Value");
    title->setFont(scaledFont(title->font(), 1.15, QFont::DemiBold));
    all->addWidget(title);

    LineEdit* integer =
        adapters.textBox(form.txtInt,
                         {"New value, before the point", "The new position before the point, digits only.",
                          "Enter confirms, Esc aborts"},
                         "0000");
    LineEdit* decimals =
        adapters.textBox(form.txtDec,
                         {"New value, behind the point", "The new position behind the point, digits only.",
                          "Enter confirms, Esc aborts"},
                         "000");
    CaptionLabel* point = adapters.label(form.Label4, {"Decimal point", "The decimal point."}, ".");
    for (QWidget* part :
         {static_cast<QWidget*>(integer), static_cast<QWidget*>(decimals), static_cast<QWidget*>(point)}) {
        part->setFont(scaledFont(part->font(), kEntrySize, QFont::DemiBold));
    }
    integer->setAlignment(Qt::AlignRight);
    QHBoxLayout* number = row();
    number->addStretch(1);
    number->addWidget(integer);
    number->addWidget(point);
    number->addWidget(decimals);
    number->addStretch(1);
    all->addLayout(number);

    for (form::Label* hint : {&form.Label2, &form.Label3}) {
        CaptionLabel* label =
            adapters.label(*hint, {shown(hint->Caption), shown(hint->Caption)}, shown(hint->Caption));
        label->setTone(CaptionLabel::Tone::Quiet);
        label->setAlignment(Qt::AlignCenter);
        all->addWidget(label);
    }
    integer->selectAll();
    integer->setFocus();
}

void layOut(Dialog& window, form::FrmAbout& form) {
    Adapters& adapters = window.adapters();
    QVBoxLayout* all = window.column();
    all->setSpacing(kGrid);
    auto* icon = new QLabel;
    icon->setPixmap(
        QApplication::windowIcon().pixmap(QSize(kIconSize, kIconSize), window.devicePixelRatioF()));
    icon->setAlignment(Qt::AlignCenter);
    icon->setVisible(!QApplication::windowIcon().isNull());
    all->addWidget(icon);
    struct Line {
        form::Label& control;
        const char* name;
    };
    for (const Line& line : {Line{form.lblTitle, "Program"}, Line{form.lblVersion, "Version"},
                             Line{form.lblDescription, "Description"}, Line{form.lblLicence, "Licence"}}) {
        CaptionLabel* label =
            adapters.label(line.control, {line.name, line.name}, shown(line.control.Caption));
        label->setAlignment(Qt::AlignCenter);
        if (&line.control == &form.lblTitle)
            label->setFont(scaledFont(label->font(), kTitleSize, QFont::DemiBold));
        if (&line.control == &form.lblVersion) label->setTone(CaptionLabel::Tone::Quiet);
        all->addWidget(label);
    }
    all->addSpacing(kGrid);
    all->addWidget(window.addCloseButton(form.cmdOK, {"OK", "Closes this window.", "Enter"}));
}

} // namespace ui
