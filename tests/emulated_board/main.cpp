// An Arduino with StandardFirmata to try the program with: emulated_board DEVICE makes DEVICE a link to it,
// shows its coils on standard output, and takes "unplug", "plug in", "mute" and "speak" from standard input.

#include "tests/emulated_board/pty_board.h"

#include <iostream>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr int kMillisecondsBetween = 200;

void show(PtyBoard& board) {
    const auto changes = board.takeChanges();
    for (const std::string& fault : board.faults())
        std::cout << "FAULT " << fault << '\n';
    if (changes.empty()) return;
    for (int output = 0; output < 8; ++output)
        std::cout << (changes.back().levels >> output & 1);
    std::cout << ' ' << changes.size() << " changes" << std::endl;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "emulated_board DEVICE\n";
        return 2;
    }
    PtyBoard board(argv[1]);
    std::string line;
    while (true) {
        pollfd orders{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        if (::poll(&orders, 1, kMillisecondsBetween) > 0) {
            if (!std::getline(std::cin, line)) return 0;
            if (line == "unplug") board.unplug();
            if (line == "plug in") board.plugIn();
            if (line == "mute" || line == "speak") board.setMute(line == "mute");
        }
        show(board);
    }
}
