#include "app/storage_notice.h"

namespace app {

StorageNotice::StorageNotice(form::Form1& form, config::RecordFile& file, platform::Timers& timers)
    : form_(form), file_(file), tmrStorage_(form, "tmrStorage", timers, kMilliseconds) {
    tmrStorage_.Tick.attach([this] { look(); });
    file_.onBusy = [this] { tmrStorage_.Enabled = true; };
}

void StorageNotice::look() {
    if (!file_.busy()) tmrStorage_.Enabled = false;
    const std::string words = file_.takeNotice();
    if (!words.empty()) form_.notice.tell(words);
}

} // namespace app
