#pragma once

#include "platform/shell.h"

#include <filesystem>

namespace qt_ports {

/// The user's browser and mail program. Pages lie in the folder "docs".
class Shell : public platform::Shell {
  public:
    /// `dataFolder` holds "docs" where it does not lie beside the executable.
    explicit Shell(std::filesystem::path dataFolder = {}) : dataFolder_(std::move(dataFolder)) {}

    void openPage(const std::string& file) override;
    void startMail(const std::string& address, const std::string& subject) override;

  private:
    std::filesystem::path dataFolder_;
};

} // namespace qt_ports
