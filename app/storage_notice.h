#pragma once

#include "config/record_file.h"
#include "form/form1.h"

namespace app {

/// Reports in the status bar when a change could not be written to the disk.
class StorageNotice {
  public:
    StorageNotice(form::Form1& form, config::RecordFile& file, platform::Timers& timers);

  private:
    static constexpr int kMilliseconds = 250;

    void look();

    form::Form1& form_;
    config::RecordFile& file_;
    form::Timer tmrStorage_; // runs while changes are being written
};

} // namespace app
