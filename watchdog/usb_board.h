#pragma once

#include <pthread.h>

namespace watchdog {

/// The K8055 board. It is written from a thread of its own: a board that hangs keeps a write for seconds, and
/// the printer port must not wait for it.
class UsbBoard {
  public:
    UsbBoard() = default;
    UsbBoard(const UsbBoard&) = delete;
    UsbBoard& operator=(const UsbBoard&) = delete;
    // No destructor: the thread runs for as long as the process.

    /// Opens the hidraw device. Returns an errno, 0 when it is open; otherwise the last one stays guarded.
    int guard(const char* path);
    void forget();

    /// Asks for all outputs off; returns at once.
    void requestOff();
    /// The last request has been carried out; also true when there is no board, or no longer.
    bool isOff();
    /// The last request has failed.
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
    int written_ = -1; // under way; set by the thread alone
    bool failed_ = false;
};

} // namespace watchdog
