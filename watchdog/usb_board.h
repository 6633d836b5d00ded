#pragma once

#include <pthread.h>

namespace watchdog {

/// The K8055 board. A separate thread writes to it: a write to a hanging board takes seconds, and the printer
/// port must not wait for it.
class UsbBoard {
  public:
    UsbBoard() = default;
    UsbBoard(const UsbBoard&) = delete;
    UsbBoard& operator=(const UsbBoard&) = delete;
    // No destructor: the thread runs for as long as the process.

    /// Opens the hidraw device. Returns an errno; 0: the board is guarded from now on. After an error the
    /// previous board stays guarded.
    int guard(const char* path);
    void forget();

    /// Requests all outputs off; returns at once.
    void requestOff();
    /// Whether the last request is done; also true if there is no board, or no board any more.
    bool isOff();
    /// Whether the last request has failed.
    bool hasFailed();

  private:
    static void* run(void* self);
    void writeRequests();
    int startThread();

    pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t wake_ = PTHREAD_COND_INITIALIZER;
    bool hasThread_ = false;
    // Under the mutex:
    int descriptor_ = -1;
    bool wanted_ = false;
    int written_ = -1; // the write under way; only the thread sets it
    bool failed_ = false;
};

} // namespace watchdog
