#include "platform/qt/dialogs.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTextDocument>
#include <iostream>

namespace qt_ports {

namespace {

QWidget* windowInFront() {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    if (QWidget* active = QApplication::activeWindow()) return active;
    const QWidgetList all = QApplication::topLevelWidgets();
    const auto visible =
        std::find_if(all.begin(), all.end(), [](const QWidget* w) { return w->isVisible(); });
    return visible == all.end() ? nullptr : *visible;
}

/// Qt's platforms without a screen have no native dialogs.
bool withoutScreen() {
    const QString platform = QGuiApplication::platformName();
    return platform == "offscreen" || platform == "minimal";
}

/// "Config File (*.cfg)|*.cfg" as its description and its pattern.
struct Filter {
    explicit Filter(const std::string& filter) {
        const QStringList parts = QString::fromStdString(filter).split('|');
        pattern = parts.value(1).replace(';', ' ');
        const QString description = parts.value(0).section('(', 0, 0).trimmed();
        name = description + " (" + pattern + ')';
    }
    /// ".cfg", or nothing for a pattern without one.
    QString extension() const {
        const qsizetype dot = pattern.indexOf('.');
        return pattern.startsWith("*.") ? pattern.mid(dot).section(' ', 0, 0) : QString();
    }
    QString name, pattern;
};

void prepare(QFileDialog& dialog, const Filter& filter, const std::string& proposed) {
    dialog.setNameFilter(filter.name);
    if (!proposed.empty()) {
        const QFileInfo place(QString::fromStdString(proposed));
        dialog.setDirectory(place.isDir() ? place.filePath() : place.path());
        if (!place.isDir()) dialog.selectFile(place.fileName());
    }
    if (withoutScreen()) dialog.setOption(QFileDialog::DontUseNativeDialog);
}

std::string nativePath(const QString& path) {
    return QDir::toNativeSeparators(path).toStdString();
}

bool mayReplace(QWidget* parent, const QString& path) {
    QMessageBox box(QMessageBox::Question, "Replace file?",
                    QFileInfo(path).fileName() + " exists already. Replace it?",
                    QMessageBox::Yes | QMessageBox::No, parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

} // namespace

bool Dialogs::message(const std::string& text, const std::string& title, platform::Icon icon,
                      platform::Buttons buttons) {
    if (displayGone_) {
        std::cerr << "twinstep: " << text << std::endl;
        return buttons == platform::Buttons::Ok;
    }
    QMessageBox box(icon == platform::Icon::Critical ? QMessageBox::Critical : QMessageBox::NoIcon,
                    QString::fromStdString(title), {}, QMessageBox::NoButton, windowInFront());
    box.setTextFormat(Qt::PlainText);
    box.setText(QString::fromStdString(text));
    const bool mayCancel = buttons == platform::Buttons::OkCancel;
    box.setStandardButtons(mayCancel ? QMessageBox::Ok | QMessageBox::Cancel : QMessageBox::Ok);
    box.setDefaultButton(QMessageBox::Ok);
    return box.exec() == QMessageBox::Ok;
}

std::optional<std::string> Dialogs::input(const std::string& prompt, const std::string& title,
                                          const std::string& proposed, std::size_t longest) {
    if (displayGone_) return std::nullopt;
    QInputDialog dialog(windowInFront());
    dialog.setWindowTitle(QString::fromStdString(title));
    const QString text = QString::fromStdString(prompt);
    dialog.setLabelText(Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text);
    dialog.setTextValue(QString::fromStdString(proposed));
    auto* line = dialog.findChild<QLineEdit*>();
    if (line && longest > 0) line->setMaxLength(static_cast<int>(longest));
    // Wide enough for its title.
    dialog.resize(dialog.fontMetrics().averageCharWidth() * 56, dialog.sizeHint().height());
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.textValue().toStdString();
}

std::optional<std::string> Dialogs::openFile(const std::string& filter, const std::string& proposed) {
    if (displayGone_) return std::nullopt;
    QFileDialog dialog(windowInFront());
    prepare(dialog, Filter(filter), proposed);
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return nativePath(dialog.selectedFiles().constFirst());
}

std::optional<std::string> Dialogs::saveFile(const std::string& filter, const std::string& proposed) {
    if (displayGone_) return std::nullopt;
    const Filter wanted(filter);
    QFileDialog dialog(windowInFront());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    prepare(dialog, wanted, proposed);
    // The question comes below, for the final file name.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        QString path = dialog.selectedFiles().constFirst();
        if (!path.endsWith(wanted.extension(), Qt::CaseInsensitive)) path += wanted.extension();
        if (!QFileInfo::exists(path) || mayReplace(dialog.parentWidget(), path)) return nativePath(path);
    }
    return std::nullopt;
}

std::optional<std::uint32_t> Dialogs::chooseColour(std::uint32_t initial, const std::string& title) {
    if (displayGone_) return std::nullopt;
    // Stored colours are blue-green-red.
    const auto part = [](std::uint32_t colour, unsigned shift) {
        return static_cast<int>(colour >> shift & 0xFFU);
    };
    QColorDialog dialog(QColor(part(initial, 0), part(initial, 8), part(initial, 16)), windowInFront());
    dialog.setWindowTitle(QString::fromStdString(title));
    if (withoutScreen()) dialog.setOption(QColorDialog::DontUseNativeDialog);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    const QColor chosen = dialog.currentColor();
    return static_cast<std::uint32_t>(chosen.red()) | static_cast<std::uint32_t>(chosen.green()) << 8U |
           static_cast<std::uint32_t>(chosen.blue()) << 16U;
}

} // namespace qt_ports
