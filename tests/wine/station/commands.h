#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The thread message that brings a line of the standard input; see takeCommand.
constexpr unsigned kCommandMessage = 0x8000; // WM_APP

/// Posts each line of the standard input to the calling thread as kCommandMessage, from a thread of its own.
/// The end of the input comes as the line "quit". The caller must own a message queue already.
void readCommands();

/// The line of a kCommandMessage whose lParam is given. Call it once for each.
std::string takeCommand(long long lParam);

/// What stands behind the blank after `word`, when the command is that word.
std::optional<std::string> argumentOf(std::string_view command, std::string_view word);

/// Prints one line at once, also into a pipe.
void print(const std::string& line);

/// Obeys what every station program of ours can do; false when the command is another one:
///   count           prints "count handles H atoms A windows W": open handles of all processes, global atoms
///                   and top-level windows of the desktop
///   close PROGRAM   asks the program of this file name to end, as a polite task manager does
///   end PROGRAM     ends it at once, as an impolite one does
bool obeyCommon(const std::string& command);
