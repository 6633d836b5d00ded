#include "platform/windows/outside/board_library.h"

#include "runtime/errors.h"
#include "runtime/newest_byte.h"

#include <chrono>
#include <condition_variable>
#include <utility>

namespace windows_ports {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kNoCard = -1;
constexpr std::chrono::milliseconds kLastByte{200};

runtime::NewestByte::Time now() {
    return Clock::now().time_since_epoch();
}

} // namespace

/// The open board and its thread, which outlives its opener where the library hangs.
struct BoardLibrary::Sender {
    Library library{kLibrary};
    long(__stdcall* open)(long card) = nullptr;
    void(__stdcall* write)(long outputs) = nullptr;
    void(__stdcall* closeBoard)() = nullptr;

    std::mutex mutex;
    std::condition_variable changed;
    runtime::NewestByte byte;
    bool ending = false, ended = false;

    Sender() {
        library.find("OpenDevice", open);
        library.find("WriteAllDigital", write);
        library.find("CloseDevice", closeBoard);
    }

    void run() {
        std::unique_lock lock(mutex);
        while (true) {
            const auto next = byte.next();
            if (next && (*next <= now() || ending)) {
                const int outputs = byte.begin();
                lock.unlock();
                write(outputs);
                lock.lock();
                byte.done(now());
                changed.notify_all();
            } else if (next) {
                changed.wait_until(lock, Clock::time_point(*next));
            } else if (ending) {
                break;
            } else {
                changed.wait(lock);
            }
        }
        lock.unlock();
        closeBoard();
        lock.lock();
        ended = true;
        changed.notify_all();
    }
};

BoardLibrary::BoardLibrary(int card, Observer observer) : card_(card), observer_(std::move(observer)) {}

BoardLibrary::~BoardLibrary() {
    close();
}

int BoardLibrary::openDevice(int address) {
    close();
    refusal_.clear();
    const int card = address == 0 ? card_ : address;
    try {
        const auto sender = std::make_shared<Sender>();
        if (sender->open(card) != card) return kNoCard;
        observer_.opened(card);
        sender_ = sender;
        std::thread([sender] { sender->run(); }).detach();
    } catch (const std::exception& error) {
        refusal_ = error.what();
        return kNoCard;
    }
    return card;
}

void BoardLibrary::writeAllDigital(int outputs) {
    if (!sender_) return;
    const std::lock_guard lock(sender_->mutex);
    sender_->byte.want(outputs);
    sender_->changed.notify_all();
}

bool BoardLibrary::taken(int mask) {
    if (!sender_) return true;
    const std::lock_guard lock(sender_->mutex);
    return sender_->byte.taken(mask);
}

void BoardLibrary::closeDevice() {
    if (!close()) throw runtime::ObjectError("The K8055 board has not taken its last byte");
}

bool BoardLibrary::close() {
    if (!sender_) return true;
    const auto sender = std::exchange(sender_, nullptr);
    bool off = false;
    {
        std::unique_lock lock(sender->mutex);
        sender->byte.want(0);
        sender->ending = true;
        sender->changed.notify_all();
        off = sender->changed.wait_for(lock, kLastByte, [&] { return sender->ended; });
    }
    // A board that hangs stays guarded.
    if (off) observer_.closed();
    return off;
}

} // namespace windows_ports
