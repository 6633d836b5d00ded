#pragma once

#include "config/record_file.h"
#include "form/boxes.h"
#include "form/form1.h"

#include <functional>

namespace config {

constexpr const char* kConfigFilter = "Config File (*.cfg)|*.cfg";

/// Named configurations: copies of "save.cfg" under other names.
class NamedConfigurations {
  public:
    NamedConfigurations(form::Form1& form, form::Boxes& boxes, RecordFile& file);

    void mnuSaveConfig_Click();
    void mnuLoadConfig_Click();

    /// Disconnects the frequency source and stops both engines before another configuration is loaded.
    std::function<void()> beforeLoad;
    /// The frequency table travels with a configuration, as a text file beside it: writes it there, and reads
    /// it from there. Both throw runtime::FileError.
    std::function<void(const std::filesystem::path& file)> saveTable;
    std::function<config::Unit::Whole(const std::filesystem::path& file)> loadTable;
    /// Called to run the whole start-up load.
    std::function<void()> load;

  private:
    void setName(const std::string& name);

    form::Form1& form_;
    form::Boxes& boxes_;
    RecordFile& file_;
};

} // namespace config
