#pragma once

#include "app/functions.h"
#include "config/position_slots.h"
#include "config/record_file.h"
#include "form/boxes.h"
#include "platform/position_file.h"

#include <string>

namespace app {

/// Keeps the engines' positions in a file that survives a crash, and offers them at the next start.
class KeptPositions {
  public:
    KeptPositions(form::Form1& form, form::Boxes& boxes, config::RecordFile& records, Functions& functions,
                  platform::PositionFile& file);

    /// Call after the start-up load and after each Load Config: once the records can be read, offers the
    /// positions left by a crash, and begins to keep positions.
    void start();
    /// Call after every event, and before a box opens: stores changed positions.
    void keep();
    /// Call at an orderly end: removes the file.
    void end();

  private:
    config::Standing standing() const;
    /// `tuner`: the stored tuner positions are loaded at the start; otherwise they begin at 0.
    void offer(const config::Standing& found, bool tuner);
    void take(const config::Standing& found, bool tuner);

    form::Form1& form_;
    form::Boxes& boxes_;
    config::RecordFile& records_;
    Functions& functions_;
    platform::PositionFile& file_;

    std::span<std::byte> memory_; // empty while nothing is kept
    bool begun_ = false;
    bool ended_ = false;
    std::uint32_t number_ = 0;
    config::Standing last_;
};

} // namespace app
