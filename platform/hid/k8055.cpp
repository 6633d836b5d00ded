#include "platform/hid/k8055.h"

#include "platform/hid/k8055_search.h"
#include "platform/hid/k8055_sender.h"
#include "runtime/errors.h"

#include <utility>

namespace hid_ports {

namespace {

constexpr int kNoCard = -1;

/// The previous board, while its outputs may still be on: its thread tries to switch them off, and the
/// watchdog guards it. There is only one for the whole process, because the kernel lets nobody open such a
/// device while it waits for a report to end.
std::shared_ptr<Sender>& lettingGo() {
    static std::shared_ptr<Sender> sender;
    return sender;
}

} // namespace

K8055::K8055(int card, Observer observer) : card_(card), observer_(std::move(observer)) {
    if (card < 0 || card >= kCards) {
        throw runtime::ObjectError("A K8055 board has an address from 0 to 3, not " + std::to_string(card));
    }
}

K8055::~K8055() {
    close();
}

int K8055::openDevice(int address) {
    close();
    refusal_.clear();
    if (auto& old = lettingGo()) {
        if (!old->finished()) {
            refusal_ = "The K8055 board still does not answer to its last report. Unplug it, or try again in "
                       "a while";
            return kNoCard;
        }
        if (old->leftNothingOn() && observer_.closed) observer_.closed();
        old.reset();
    }
    const int card = address == 0 ? card_ : address;
    const auto paths = pathsOfBoards(card);
    if (paths.empty()) refusal_ = whyNoNode(card);
    for (const std::string& path : paths) {
        if (openPath(path)) return card;
    }
    return kNoCard;
}

bool K8055::openPath(const std::string& path) {
    Sender::Handle device(hid_open_path(path.c_str()));
    if (!device) {
        refusal_ = whyNotOpened(path);
        return false;
    }
    try {
        // The watchdog must guard the board before the first byte; without a guard the board is not used.
        if (observer_.opened) observer_.opened(path);
        sender_ = Sender::start(std::move(device));
    } catch (const std::exception& error) {
        refusal_ = error.what();
        return false;
    }
    refusal_.clear();
    return true;
}

void K8055::writeAllDigital(int outputs) {
    if (!sender_) return;
    sender_->want(outputs);
    sender_->check();
}

bool K8055::taken(int mask) {
    if (!sender_) return true;
    sender_->check();
    return sender_->taken(mask);
}

void K8055::closeDevice() {
    if (!close()) throw runtime::ObjectError("The K8055 board has not taken its last byte");
}

bool K8055::close() {
    if (!sender_) return true;
    const auto sender = std::exchange(sender_, nullptr);
    const bool off = sender->finish();
    if (!sender->leftNothingOn()) {
        lettingGo() = sender;
    } else if (observer_.closed) {
        observer_.closed();
    }
    return off;
}

} // namespace hid_ports
