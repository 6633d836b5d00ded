#include "config/named_configurations.h"

#include "config/records.h"
#include "runtime/errors.h"
#include "runtime/file_name.h"
#include "runtime/text.h"

#include <optional>

namespace config {

namespace {

/// "loop.cfg" has its table in "loop.HiResMem.txt".
std::filesystem::path tableBeside(std::filesystem::path configuration) {
    return configuration.replace_extension(".HiResMem.txt");
}

} // namespace

NamedConfigurations::NamedConfigurations(form::Form1& form, form::Boxes& boxes, RecordFile& file)
    : form_(form), boxes_(boxes), file_(file) {
    form_.mnuSaveConfig.Click.attach([this] { tellFailure([this] { mnuSaveConfig_Click(); }); });
    form_.mnuLoadConfig.Click.attach([this] { tellFailure([this] { mnuLoadConfig_Click(); }); });
}

/// A file that cannot be read or written is no reason to stop an engine.
void NamedConfigurations::tellFailure(const std::function<void()>& step) {
    try {
        step();
    } catch (const runtime::FileError& error) {
        boxes_.critical(std::string(error.what()) + ".", "Error!");
    }
}

void NamedConfigurations::setName(const std::string& name) {
    form_.varConfigName = name;
    form_.StatusBar1.Panels(form::kPanelConfiguration) = form_.varConfigName;
}

void NamedConfigurations::mnuSaveConfig_Click() {
    const auto name =
        boxes_.input("Insert a Text (8 characters)", "Configuration Name", "test", kTaggedTextMax);
    if (!name) return;
    // The name is written to the working file before the user chooses a file, and stays there if the user
    // cancels.
    const std::string kept = runtime::firstCharacters(*name, kTaggedTextMax);
    file_.write({taggedTextRecord(record::kConfigName, kept)});
    setName(kept);
    const auto chosen = boxes_.saveFile(kConfigFilter, placeFor(kept));
    if (!chosen) return;
    const auto target = runtime::pathOf(*chosen);
    file_.copyTo(target, {{tableBeside(target), presentTable().bytes}},
                 "Configuration " + kept + " saved in " + *chosen);
}

void NamedConfigurations::mnuLoadConfig_Click() {
    const auto chosen = boxes_.openFile(kConfigFilter, placeFor(""));
    if (!chosen) return;
    const auto source = runtime::pathOf(*chosen);
    const Configuration wanted{file_.configuration(source), loadTable(tableBeside(source)),
                               runtime::firstCharacters(source.stem().string(), kTaggedTextMax)};
    std::optional<Configuration> before;
    try {
        before = present();
    } catch (const runtime::FileError&) { // what could not be read cannot come back
    }
    if (before && onLoad) {
        onLoad(*before, [&] { use(wanted); });
    } else {
        use(wanted);
    }
}

Configuration NamedConfigurations::present() {
    return {file_.bytes(), presentTable(), form_.varConfigName};
}

void NamedConfigurations::use(const Configuration& configuration, const std::vector<Record>& records) {
    beforeLoad();
    file_.replaceBy(configuration.bytes, {configuration.table});
    if (!records.empty()) file_.write(records);
    setName(configuration.name);
    load();
}

std::string NamedConfigurations::placeFor(const std::string& name) const {
    const auto folder = file_.path().parent_path();
    const bool isFile = !name.empty() && name.find_first_of("/\\") == std::string::npos;
    const std::u8string place = (isFile ? folder / runtime::pathOf(name + ".cfg") : folder).u8string();
    return {place.begin(), place.end()};
}

} // namespace config
