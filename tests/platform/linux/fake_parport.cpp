#include "fake_parport.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <utility>

FakeParport::FakeParport() : testbed_(umockdev_testbed_new()), handler_(umockdev_ioctl_base_new()) {
    GError* error = nullptr;
    umockdev_testbed_add_from_string(testbed_,
                                     "P: /devices/parport0\nN: parport0\nE: DEVNAME=/dev/parport0\n"
                                     "E: SUBSYSTEM=ppdev\nA: dev=99:0\n",
                                     &error);
    if (error) g_error("%s", error->message);
    g_signal_connect(handler_, "handle-ioctl", G_CALLBACK(onIoctl), this);
    umockdev_testbed_attach_ioctl(testbed_, "/dev/parport0", handler_, &error);
    if (error) g_error("%s", error->message);
}

FakeParport::~FakeParport() {
    release();
    umockdev_testbed_detach_ioctl(testbed_, "/dev/parport0", nullptr);
    g_object_unref(handler_);
    g_object_unref(testbed_);
}

void FakeParport::fail(unsigned long request, int error) {
    const std::lock_guard lock(mutex_);
    failing_[request] = error;
}

int FakeParport::calls(unsigned long request) {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(std::count(requests_.begin(), requests_.end(), request));
}

std::vector<unsigned long> FakeParport::requests() {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void FakeParport::stall(unsigned long request) {
    const std::lock_guard lock(mutex_);
    stalled_ = request;
}

void FakeParport::release() {
    const std::lock_guard lock(mutex_);
    stalled_ = 0;
    released_.notify_all();
}

int FakeParport::data() {
    const std::lock_guard lock(mutex_);
    return data_;
}

void FakeParport::setData(int data) {
    const std::lock_guard lock(mutex_);
    data_ = data;
}

std::vector<int> FakeParport::takeWritten() {
    const std::lock_guard lock(mutex_);
    return std::exchange(written_, {});
}

int FakeParport::direction() {
    const std::lock_guard lock(mutex_);
    return direction_;
}

gboolean FakeParport::onIoctl(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client, gpointer self) {
    UMockdevIoctlData* argument = umockdev_ioctl_client_get_arg(client);
    const int error =
        static_cast<FakeParport*>(self)->answer(umockdev_ioctl_client_get_request(client), argument);
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
    return TRUE;
}

int FakeParport::answer(unsigned long request, UMockdevIoctlData* argument) {
    std::unique_lock lock(mutex_);
    requests_.push_back(request);
    released_.wait(lock, [&] { return stalled_ != request; });
    if (failing_[request] != 0) return failing_[request];
    const auto resolve = [argument](gsize size) {
        return umockdev_ioctl_data_resolve(argument, 0, size, nullptr);
    };
    switch (request) {
    case PPEXCL:
    case PPCLAIM:
    case PPRELEASE:
        return 0;
    case PPDATADIR: {
        UMockdevIoctlData* value = resolve(sizeof(int));
        direction_ = *reinterpret_cast<const int*>(value->data);
        umockdev_ioctl_data_unref(value);
        return 0;
    }
    case PPWDATA: {
        UMockdevIoctlData* value = resolve(1);
        data_ = *value->data;
        written_.push_back(data_);
        umockdev_ioctl_data_unref(value);
        return 0;
    }
    case PPRDATA: {
        UMockdevIoctlData* value = resolve(1);
        auto byte = static_cast<std::uint8_t>(data_);
        umockdev_ioctl_data_update(value, 0, &byte, 1);
        umockdev_ioctl_data_unref(value);
        return 0;
    }
    default:
        return ENOTTY;
    }
}
