#include "fake_k8055.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <thread>
#include <umockdev.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace {

/// What the board says of its reports: 8 bytes in, 8 bytes out, without numbers.
constexpr std::array<std::uint8_t, 30> kDescriptor = {
    0x06, 0x00, 0xff, 0x09, 0x01, 0xa1, 0x01, 0x19, 0x01, 0x29, 0x08, 0x15, 0x00, 0x26, 0xff,
    0x00, 0x75, 0x08, 0x95, 0x08, 0x81, 0x02, 0x19, 0x01, 0x29, 0x08, 0x91, 0x02, 0xc0, 0x00};

std::string usbPath(int number) {
    return "/devices/pci0000:00/0000:00:14.0/usb1/1-" + std::to_string(number + 1);
}

std::string facePath(int number) {
    return usbPath(number) + "/1-" + std::to_string(number + 1) + ":1.0";
}

void check(GError* error) {
    if (error) g_error("%s", error->message);
}

} // namespace

struct FakeK8055::Write {
    UMockdevIoctlClient* client;
    Report report;
};

struct FakeK8055::Bed {
    explicit Bed(FakeK8055* board) : testbed(umockdev_testbed_new()), handler(umockdev_ioctl_base_new()) {
        g_signal_connect(handler, "handle-ioctl", G_CALLBACK(onIoctl), board);
        g_signal_connect(handler, "handle-write", G_CALLBACK(onWrite), board);
        g_signal_connect(handler, "handle-read", G_CALLBACK(onRead), board);
    }
    Bed(const Bed&) = delete;
    Bed& operator=(const Bed&) = delete;
    ~Bed() {
        g_object_unref(handler);
        g_object_unref(testbed);
    }

    static gboolean onIoctl(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client, FakeK8055* /*board*/) {
        UMockdevIoctlData* argument = umockdev_ioctl_client_get_arg(client);
        switch (umockdev_ioctl_client_get_request(client)) {
        case HIDIOCGRDESCSIZE: {
            UMockdevIoctlData* value = umockdev_ioctl_data_resolve(argument, 0, sizeof(int), nullptr);
            int size = kDescriptor.size();
            umockdev_ioctl_data_update(value, 0, reinterpret_cast<guint8*>(&size), sizeof size);
            umockdev_ioctl_data_unref(value);
            break;
        }
        case HIDIOCGRDESC: {
            const gsize offset = offsetof(hidraw_report_descriptor, value);
            UMockdevIoctlData* value =
                umockdev_ioctl_data_resolve(argument, 0, sizeof(hidraw_report_descriptor), nullptr);
            auto bytes = kDescriptor;
            umockdev_ioctl_data_update(value, offset, bytes.data(), static_cast<gint>(bytes.size()));
            umockdev_ioctl_data_unref(value);
            break;
        }
        default:
            umockdev_ioctl_client_complete(client, -1, EINVAL);
            return TRUE;
        }
        umockdev_ioctl_client_complete(client, 0, 0);
        return TRUE;
    }

    static gboolean onWrite(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client, FakeK8055* board) {
        const UMockdevIoctlData* data = umockdev_ioctl_client_get_arg(client);
        const std::lock_guard lock(board->mutex_);
        board->waiting_.push_back({g_object_ref(client), Report(data->data, data->data + data->data_len)});
        board->changed_.notify_all();
        return TRUE;
    }

    /// Its inputs never change; a device that is gone hangs up.
    static gboolean onRead(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client, FakeK8055* board) {
        const std::lock_guard lock(board->mutex_);
        umockdev_ioctl_client_complete(
            client, -1, board->isGone(umockdev_ioctl_client_get_devnode(client)) ? EIO : EAGAIN);
        return TRUE;
    }

    fs::path root() const {
        gchar* path = umockdev_testbed_get_root_dir(testbed);
        const fs::path copy = path;
        g_free(path);
        return copy;
    }

    UMockdevTestbed* testbed;
    UMockdevIoctlBase* handler;
};

FakeK8055::FakeK8055() : bed_(std::make_unique<Bed>(this)), worker_([this] { work(); }) {}

FakeK8055::~FakeK8055() {
    release();
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        changed_.notify_all();
    }
    worker_.join();
    for (const auto& [number, file] : devices_) {
        const std::string node = "/dev/hidraw" + std::to_string(number);
        umockdev_testbed_detach_ioctl(bed_->testbed, node.c_str(), nullptr);
    }
}

void FakeK8055::plugInWithoutNode(int card, int number, const std::string& driver) {
    const std::string usb = usbPath(number);
    const std::string link =
        driver.empty() ? "" : "L: driver=../../../../../../bus/usb/drivers/" + driver + "\n";
    for (const std::string& device :
         {"P: " + usb + "\nE: DEVTYPE=usb_device\nE: SUBSYSTEM=usb\nA: idVendor=10cf\nA: idProduct=550" +
              std::to_string(card) + "\nA: bcdDevice=0100\nA: manufacturer=Velleman\nA: product=USB K8055\n",
          "P: " + facePath(number) +
              "\nE: DEVTYPE=usb_interface\nE: SUBSYSTEM=usb\nA: bInterfaceNumber=00\n" + link})
        add(device);
}

void FakeK8055::add(const std::string& device) {
    GError* error = nullptr;
    umockdev_testbed_add_from_string(bed_->testbed, device.c_str(), &error);
    check(error);
}

void FakeK8055::plugIn(int card, int number) {
    plugInWithoutNode(card, number, "usbhid");
    const std::string face = facePath(number);
    const std::string product = "550" + std::to_string(card), name = "hidraw" + std::to_string(number);
    const std::string hid = face + "/0003:10CF:" + product + ".000" + std::to_string(number + 1);
    const std::string devices[] = {
        "P: " + hid + "\nE: SUBSYSTEM=hid\nE: HID_ID=0003:000010CF:0000" + product +
            "\nE: HID_NAME=Velleman  USB K8055\nE: HID_UNIQ=\n",
        "P: " + hid + "/hidraw/" + name + "\nN: " + name + "\nE: DEVNAME=/dev/" + name +
            "\nE: SUBSYSTEM=hidraw\nA: dev=240:" + std::to_string(number) + "\nL: device=../../../" +
            hid.substr(face.size() + 1) + "\n",
    };
    for (const std::string& device : devices)
        add(device);
    GError* error = nullptr;
    const std::string node = "/dev/" + name;
    umockdev_testbed_attach_ioctl(bed_->testbed, node.c_str(), bed_->handler, &error);
    check(error);
    devices_[number] = fs::read_symlink(bed_->root() / "dev" / name);
}

void FakeK8055::unplug(int number) {
    {
        const std::lock_guard lock(mutex_);
        gone_.push_back("/dev/hidraw" + std::to_string(number));
    }
    // What stands for the node is a terminal: with something to read it wakes those who wait for a hang-up.
    const std::string node = "/dev/hidraw" + std::to_string(number);
    const int wake = umockdev_testbed_get_dev_fd(bed_->testbed, node.c_str());
    if (::write(wake, "x", 1) != 1) g_error("%s cannot be unplugged", node.c_str());
    umockdev_testbed_remove_device(bed_->testbed, ("/sys" + usbPath(number)).c_str());
}

void FakeK8055::takeFor(std::chrono::milliseconds time) {
    const std::lock_guard lock(mutex_);
    time_ = time;
}

void FakeK8055::takeOnly(int bytes) {
    const std::lock_guard lock(mutex_);
    bytes_ = bytes;
}

void FakeK8055::failWith(int error) {
    const std::lock_guard lock(mutex_);
    error_ = error;
}

void FakeK8055::hang() {
    const std::lock_guard lock(mutex_);
    hanging_ = true;
}

void FakeK8055::release() {
    const std::lock_guard lock(mutex_);
    hanging_ = false;
    changed_.notify_all();
}

bool FakeK8055::isBusy() {
    const std::lock_guard lock(mutex_);
    return busy_;
}

void FakeK8055::forbid(int number) {
    fs::permissions(bed_->root(), fs::perms::all);
    for (const auto& entry : fs::recursive_directory_iterator(bed_->root() / "ioctl"))
        fs::permissions(entry, fs::perms::all);
    fs::permissions(bed_->root() / "ioctl", fs::perms::all);
    fs::permissions(devices_.at(number), fs::perms::none);
}

std::vector<FakeK8055::Report> FakeK8055::takeReports() {
    const std::lock_guard lock(mutex_);
    return std::exchange(reports_, {});
}

int FakeK8055::outputs() {
    const std::lock_guard lock(mutex_);
    return reports_.empty() ? -1 : reports_.back().at(2);
}

int FakeK8055::openFiles(int number) const {
    int open = 0;
    std::error_code none; // the listing's own descriptor is gone by the time it is looked at
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        if (fs::read_symlink(entry, none) == devices_.at(number)) ++open;
    }
    return open;
}

void FakeK8055::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return ended_ || !waiting_.empty(); });
        if (waiting_.empty()) return;
        const Write write = std::move(waiting_.front());
        waiting_.pop_front();
        busy_ = true;
        const auto time = time_;
        lock.unlock();
        std::this_thread::sleep_for(time);
        lock.lock();
        changed_.wait(lock, [this] { return !hanging_; });
        busy_ = false;
        const long result = take(umockdev_ioctl_client_get_devnode(write.client), write.report);
        umockdev_ioctl_client_complete(write.client, result < 0 ? -1 : result,
                                       result < 0 ? static_cast<int>(-result) : 0);
        g_object_unref(write.client);
    }
}

bool FakeK8055::isGone(const std::string& device) const {
    return std::find(gone_.begin(), gone_.end(), device) != gone_.end();
}

long FakeK8055::take(const std::string& device, const Report& report) {
    if (isGone(device)) return -ENODEV;
    if (error_ != 0) return -error_;
    const long taken = std::min<long>(static_cast<long>(report.size()), bytes_);
    if (taken == static_cast<long>(report.size())) reports_.push_back(report);
    return taken;
}
