// A DDE server with one item, for the tests: what a station program is to the bridge.
//
// dde_server APPLICATION TOPIC ITEM [TEXT], and on the standard input, one a line:
//   set TEXT    changes the item (UTF-8 here, the system's ANSI code page in DDE)
//   bare TEXT   the same without the zero that should end it
//   count, close PROGRAM, end PROGRAM   see obeyCommon
//   quit        ends every conversation, then the program
//   vanish      ends the program at once, as a crash does
// It prints "ready", "linked", "unlinked", "disconnected" and what obeyCommon does.

#include "platform/windows/text.h"
#include "tests/wine/station/commands.h"

#include <cstdlib>
#include <set>
#include <string>
#include <windows.h>
// Needs the types of windows.h.
#include <ddeml.h>

namespace {

/// In the system's ANSI code page.
std::string ansi(const std::wstring& text) {
    constexpr std::size_t kLongestCharacter = 4; // bytes
    std::string bytes(text.size() * kLongestCharacter, '\0');
    bytes.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                            static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

/// One for the process: DDEML's callback has no argument of the caller's.
struct Server {
    DWORD instance = 0;
    HSZ application = nullptr, topic = nullptr, item = nullptr;
    std::string data; // in the system's code page, with its zero
    std::set<HCONV> conversations;

    void change(const std::string& text, bool withZero) {
        data = ansi(windows_ports::wide(text));
        if (withZero) data.push_back('\0');
        DdePostAdvise(instance, topic, item);
    }

    void end() {
        // Not every system ends the conversations together with the instance.
        for (HCONV conversation : conversations)
            DdeDisconnect(conversation);
        DdeNameService(instance, application, nullptr, DNS_UNREGISTER);
        DdeUninitialize(instance);
    }
};

Server server;

HDDEDATA accepted(bool yes) {
    return reinterpret_cast<HDDEDATA>(static_cast<ULONG_PTR>(yes));
}

HDDEDATA CALLBACK onTransaction(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second, HDDEDATA,
                                ULONG_PTR, ULONG_PTR) {
    // Of a connection the strings are topic and application, of all else topic and item.
    const bool ourTopic = DdeCmpStringHandles(first, server.topic) == 0;
    const bool ourItem = ourTopic && format == CF_TEXT && DdeCmpStringHandles(second, server.item) == 0;
    switch (type) {
    case XTYP_CONNECT:
        return accepted(ourTopic && DdeCmpStringHandles(second, server.application) == 0);
    case XTYP_CONNECT_CONFIRM:
        server.conversations.insert(conversation);
        return nullptr;
    case XTYP_ADVSTART:
        if (ourItem) print("linked");
        return accepted(ourItem);
    case XTYP_ADVREQ:
    case XTYP_REQUEST:
        if (!ourItem) return nullptr;
        return DdeCreateDataHandle(server.instance, reinterpret_cast<BYTE*>(server.data.data()),
                                   static_cast<DWORD>(server.data.size()), 0, server.item, CF_TEXT, 0);
    case XTYP_ADVSTOP:
        print("unlinked");
        return nullptr;
    case XTYP_DISCONNECT:
        server.conversations.erase(conversation);
        print("disconnected");
        return nullptr;
    default:
        return nullptr;
    }
}

void obey(const std::string& command) {
    if (const auto text = argumentOf(command, "set")) {
        server.change(*text, true);
    } else if (const auto bare = argumentOf(command, "bare")) {
        server.change(*bare, false);
    } else if (command == "vanish") {
        TerminateProcess(GetCurrentProcess(), EXIT_SUCCESS);
    } else if (command == "quit") {
        PostQuitMessage(EXIT_SUCCESS);
    } else if (!obeyCommon(command)) {
        print("unknown command: " + command);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4 && argc != 5) {
        print("usage: dde_server APPLICATION TOPIC ITEM [TEXT]");
        return EXIT_FAILURE;
    }
    if (DdeInitializeA(&server.instance, onTransaction, APPCLASS_STANDARD, 0) != DMLERR_NO_ERROR) {
        print("DDEML could not be initialised");
        return EXIT_FAILURE;
    }
    server.application = DdeCreateStringHandleA(server.instance, argv[1], CP_WINANSI);
    server.topic = DdeCreateStringHandleA(server.instance, argv[2], CP_WINANSI);
    server.item = DdeCreateStringHandleA(server.instance, argv[3], CP_WINANSI);
    server.change(argc == 5 ? argv[4] : "", true);
    readCommands();
    DdeNameService(server.instance, server.application, nullptr, DNS_REGISTER);
    print("ready");

    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (message.hwnd == nullptr && message.message == kCommandMessage) {
            obey(takeCommand(message.lParam));
        } else {
            DispatchMessageA(&message);
        }
    }
    server.end();
    return EXIT_SUCCESS;
}
