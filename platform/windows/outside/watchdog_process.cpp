#include "platform/windows/outside/watchdog_process.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <array>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace windows_ports {

namespace {

constexpr DWORD kLongestStart = 5000; // milliseconds; from a slow disk
constexpr DWORD kLongestAnswer = 1000;
constexpr DWORD kLongestEnd = 600;

SECURITY_ATTRIBUTES inheritable() {
    return {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
}

Handle makeEvent() {
    auto attributes = inheritable();
    return Handle(CreateEventW(&attributes, FALSE, FALSE, nullptr));
}

/// The list of the handles that a started program inherits, and no other.
class HandleList {
  public:
    explicit HandleList(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        room_.resize(size);
        if (InitializeProcThreadAttributeList(get(), 1, 0, &size)) {
            UpdateProcThreadAttribute(get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                      handles_.size() * sizeof(HANDLE), nullptr, nullptr);
        }
    }
    HandleList(const HandleList&) = delete;
    HandleList& operator=(const HandleList&) = delete;
    ~HandleList() { DeleteProcThreadAttributeList(get()); }
    LPPROC_THREAD_ATTRIBUTE_LIST get() {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(room_.data());
    }

  private:
    std::vector<HANDLE> handles_;
    std::vector<std::byte> room_;
};

/// In a folder of the system, and outside this program's job where the job lets it: a watchdog must not end
/// with the program. Returns an error of GetLastError.
DWORD spawn(const std::filesystem::path& program, const std::vector<HANDLE>& handles, Handle& process) {
    std::wstring line = L"\"" + program.wstring() + L"\"";
    for (const HANDLE handle : handles)
        line += L" " + std::to_wstring(reinterpret_cast<std::uintptr_t>(handle));
    HandleList list(handles);
    STARTUPINFOEXW start{};
    start.StartupInfo.cb = sizeof start;
    start.lpAttributeList = list.get();
    std::array<wchar_t, MAX_PATH> folder{};
    GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    for (const DWORD outsideJob : {static_cast<DWORD>(CREATE_BREAKAWAY_FROM_JOB), DWORD{0}}) {
        PROCESS_INFORMATION started{};
        if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                           EXTENDED_STARTUPINFO_PRESENT | outsideJob, nullptr, folder.data(),
                           &start.StartupInfo, &started)) {
            CloseHandle(started.hThread);
            process = Handle(started.hProcess);
            return 0;
        }
    }
    return GetLastError();
}

} // namespace

WatchdogProcess::WatchdogProcess(const std::filesystem::path& program) {
    const auto refuse = [&program](const std::string& why) {
        throw runtime::ObjectError("The watchdog " + program.string() + " cannot be started: " + why);
    };
    if (const DWORD error = start(program); error != 0 || !shared_) refuse(reason(error));
    if (const DWORD error = ask({}, kLongestStart)) {
        kill();
        refuse(error == ERROR_TIMEOUT ? "it does not answer" : "it ends at once");
    }
}

DWORD WatchdogProcess::start(const std::filesystem::path& program) {
    auto attributes = inheritable();
    memory_ = Handle(CreateFileMappingW(INVALID_HANDLE_VALUE, &attributes, PAGE_READWRITE, 0,
                                        sizeof(watchdog::Shared), nullptr));
    request_ = makeEvent();
    answer_ = makeEvent();
    tripped_ = makeEvent();
    HANDLE self = nullptr;
    if (!memory_ || !request_ || !answer_ || !tripped_ ||
        !DuplicateHandle(GetCurrentProcess(), GetCurrentProcess(), GetCurrentProcess(), &self,
                         SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, TRUE, 0)) {
        return GetLastError();
    }
    const Handle controller(self);
    void* const view = MapViewOfFile(memory_.get(), FILE_MAP_WRITE, 0, 0, sizeof(watchdog::Shared));
    if (!view) return GetLastError();
    shared_ = new (view) watchdog::Shared();
    return spawn(program, {memory_.get(), controller.get(), request_.get(), answer_.get(), tripped_.get()},
                 process_);
}

WatchdogProcess::~WatchdogProcess() {
    if (process_) {
        shared_->request.kind = watchdog::Kind::Bye;
        SetEvent(request_.get());
        WaitForSingleObject(process_.get(), kLongestEnd);
    }
    if (shared_) UnmapViewOfFile(shared_);
}

DWORD WatchdogProcess::ask(const watchdog::Request& request) {
    return ask(request, kLongestAnswer);
}

DWORD WatchdogProcess::ask(const watchdog::Request& request, DWORD patience) {
    ResetEvent(answer_.get());
    shared_->request = request;
    SetEvent(request_.get());
    const std::array<HANDLE, 2> sources{answer_.get(), process_.get()};
    switch (WaitForMultipleObjects(sources.size(), sources.data(), FALSE, patience)) {
    case WAIT_OBJECT_0:
        return shared_->request.error;
    case WAIT_OBJECT_0 + 1:
        return ERROR_BROKEN_PIPE;
    default:
        return ERROR_TIMEOUT;
    }
}

void WatchdogProcess::beat(bool engineRuns) {
    shared_->beat = static_cast<LONG64>(GetTickCount64());
    shared_->engineRuns = engineRuns ? 1 : 0;
}

HANDLE WatchdogProcess::share(HANDLE handle) const {
    HANDLE theirs = nullptr;
    DuplicateHandle(GetCurrentProcess(), handle, process_.get(), &theirs, 0, FALSE, DUPLICATE_SAME_ACCESS);
    return theirs;
}

} // namespace windows_ports
