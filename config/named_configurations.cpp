#include "config/named_configurations.h"

#include "config/records.h"
#include "runtime/file_name.h"
#include "runtime/text.h"

namespace config {

namespace {

/// "loop.cfg" has its table in "loop.HiResMem.txt".
std::filesystem::path tableBeside(std::filesystem::path configuration) {
    return configuration.replace_extension(".HiResMem.txt");
}

} // namespace

NamedConfigurations::NamedConfigurations(form::Form1& form, form::Boxes& boxes, RecordFile& file)
    : form_(form), boxes_(boxes), file_(file) {
    form_.mnuSaveConfig.Click.attach([this] { mnuSaveConfig_Click(); });
    form_.mnuLoadConfig.Click.attach([this] { mnuLoadConfig_Click(); });
}

void NamedConfigurations::setName(const std::string& name) {
    form_.varConfigName = name;
    form_.StatusBar1.Panels(form::kPanelConfiguration) = form_.varConfigName;
}

void NamedConfigurations::mnuSaveConfig_Click() {
    const auto name = boxes_.input("Insert a Text (8 characters)", "Configuration Name", "test");
    if (!name) return;
    // The name is written to the working file before the user chooses a file, and stays there if the user
    // cancels.
    const std::string kept = runtime::firstCharacters(*name, kTaggedTextMax);
    file_.write({taggedTextRecord(record::kConfigName, kept)});
    setName(kept);
    const auto chosen = boxes_.saveFile(kConfigFilter);
    if (!chosen) return;
    const auto target = runtime::pathOf(*chosen);
    file_.copyTo(target);
    saveTable(tableBeside(target));
}

void NamedConfigurations::mnuLoadConfig_Click() {
    const auto chosen = boxes_.openFile(kConfigFilter);
    if (!chosen) return;
    const auto source = runtime::pathOf(*chosen);
    const std::string bytes = file_.configuration(source);
    const Unit::Whole table = loadTable(tableBeside(source));
    beforeLoad();
    file_.replaceBy(bytes, {table});
    setName(runtime::firstCharacters(source.stem().string(), kTaggedTextMax));
    load();
}

} // namespace config
