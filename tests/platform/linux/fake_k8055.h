#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// K8055 boards on an emulated USB bus, as the kernel's hidraw driver would offer them.
class FakeK8055 {
  public:
    using Report = std::vector<std::uint8_t>; // as written, with the report's number

    FakeK8055();
    FakeK8055(const FakeK8055&) = delete;
    FakeK8055& operator=(const FakeK8055&) = delete;
    ~FakeK8055();

    /// Plugs a board with this address in; it becomes /dev/hidraw`number`.
    void plugIn(int card, int number);
    /// The kernel makes no device for this one; `driver` is what has it, or empty.
    void plugInWithoutNode(int card, int number, const std::string& driver);
    /// The board is gone: writes to an open device fail, and nobody finds it any more.
    void unplug(int number);

    void takeFor(std::chrono::milliseconds time); // how long a report takes
    void takeOnly(int bytes);                     // the board accepts so many bytes of a report
    void failWith(int error);                     // errno of all writes; 0: they work again
    /// From now on no report ends before release is called.
    void hang();
    void release();
    /// A report is under way.
    bool isBusy();

    /// Takes every right to the board's device away, which root does not heed; all else is open to everybody.
    void forbid(int number);

    std::vector<Report> takeReports();
    /// The digital outputs as the last report set them; -1 before.
    int outputs();
    /// How often this process has the board's device open.
    int openFiles(int number) const;

  private:
    struct Bed; // the emulation, whose headers do not go together with the toolkit's
    struct Write;
    void add(const std::string& device);
    bool isGone(const std::string& device) const;
    /// The board at work, one report after the other.
    void work();
    /// Bytes taken, or a negative errno.
    long take(const std::string& device, const Report& report);

    std::unique_ptr<Bed> bed_;
    std::map<int, std::string> devices_; // all that were ever plugged in, with what stands for their nodes

    std::mutex mutex_; // requests come in a thread of the test bed, and reports are taken in one of ours
    std::condition_variable changed_;
    std::deque<Write> waiting_;
    bool ended_ = false;
    std::vector<std::string> gone_;
    std::vector<Report> reports_;
    std::chrono::milliseconds time_{0};
    int bytes_ = 9;
    int error_ = 0;
    bool hanging_ = false;
    bool busy_ = false;
    std::thread worker_;
};
