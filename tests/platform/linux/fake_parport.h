#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <umockdev.h>
#include <vector>

/// /dev/parport0 as the kernel's ppdev driver would offer it, for this process and those that it starts.
class FakeParport {
  public:
    FakeParport();
    FakeParport(const FakeParport&) = delete;
    FakeParport& operator=(const FakeParport&) = delete;
    ~FakeParport();

    /// From now on this request fails with this errno; 0: it works again.
    void fail(unsigned long request, int error);
    int calls(unsigned long request);
    /// All requests in their order.
    std::vector<unsigned long> requests();
    /// From now on this request is not answered before release is called.
    void stall(unsigned long request);
    void release();
    int data();
    void setData(int data);
    /// The bytes written since the last call.
    std::vector<int> takeWritten();
    /// Value of the last PPDATADIR; -1 without one.
    int direction();

  private:
    static gboolean onIoctl(UMockdevIoctlBase* base, UMockdevIoctlClient* client, gpointer self);
    int answer(unsigned long request, UMockdevIoctlData* argument);

    UMockdevTestbed* testbed_;
    UMockdevIoctlBase* handler_;
    std::mutex mutex_; // the requests are answered in a thread of the test bed
    std::condition_variable released_;
    unsigned long stalled_ = 0; // the request that is not answered; 0 for none
    std::vector<unsigned long> requests_;
    std::map<unsigned long, int> failing_;
    std::vector<int> written_;
    int data_ = 0;
    int direction_ = -1;
};
