#pragma once

#include "config/record_file.h"
#include "form/form1.h"

namespace app {

/// Says in the status bar what became of changes on their way to the disk, where something went wrong.
class StorageNotice {
  public:
    StorageNotice(form::Form1& form, config::RecordFile& file, platform::Timers& timers);

  private:
    static constexpr int kMilliseconds = 250;

    void look();

    form::Form1& form_;
    config::RecordFile& file_;
    form::Timer tmrStorage_; // runs while something is on its way
};

} // namespace app
