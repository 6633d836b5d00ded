#include "platform/windows/outside/sound.h"

#include <windows.h>
// After the header above, which declares what this one uses.
#include <mmsystem.h>

namespace windows_ports {

void Sound::play(const std::string& file) {
    PlaySoundW((folder_ / file).c_str(), nullptr, SND_FILENAME | SND_ASYNC | SND_NODEFAULT);
}

} // namespace windows_ports
