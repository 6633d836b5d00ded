#pragma once

#include "config/record_file.h"
#include "form/boxes.h"
#include "form/form1.h"

#include <functional>
#include <string>
#include <vector>

namespace config {

constexpr const char* kConfigFilter = "Config File (*.cfg)|*.cfg";

/// All that a named configuration consists of.
struct Configuration {
    std::string bytes; // of "save.cfg"
    Unit::Whole table; // the frequency table
    std::string name;
};

/// Named configurations: copies of "save.cfg" under other names.
class NamedConfigurations {
  public:
    NamedConfigurations(form::Form1& form, form::Boxes& boxes, RecordFile& file);

    void mnuSaveConfig_Click();
    void mnuLoadConfig_Click();

    /// The configuration in use. Throws runtime::FileError if "save.cfg" could not be read.
    Configuration present();
    /// Puts a configuration and then single records in the place of the one in use, and loads them.
    void use(const Configuration& configuration, const std::vector<Record>& records = {});

    /// Disconnects the frequency source and stops both engines before another configuration is loaded.
    std::function<void()> beforeLoad;
    /// The frequency table travels with a configuration, as a text file beside it: reads it from there.
    /// Throws runtime::FileError.
    std::function<config::Unit::Whole(const std::filesystem::path& file)> loadTable;
    /// The frequency table in use.
    std::function<config::Unit::Whole()> presentTable;
    /// Called when the user has chosen a configuration; `use` puts it in the place of `before`.
    std::function<void(const Configuration& before, const std::function<void()>& use)> onLoad;
    /// Called to run the whole start-up load.
    std::function<void()> load;

  private:
    void tellFailure(const std::function<void()>& step);
    /// The folder of the settings, with a file of this name unless it is empty.
    std::string placeFor(const std::string& name) const;
    void setName(const std::string& name);

    form::Form1& form_;
    form::Boxes& boxes_;
    RecordFile& file_;
};

} // namespace config
