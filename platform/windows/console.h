#pragma once

#include <string>

namespace windows_ports {

/// Standard output and error of a program that has no console of its own: where they lead to a file or a pipe
/// they are used as they are, else the console of the program that started this one, else a new one.
void openConsole();
/// The same without a new console.
void joinConsole();
void writeOutput(const std::string& utf8);
void writeError(const std::string& utf8);
/// Whether standard output leads somewhere without openConsole.
bool hasOutput();

/// One box, for a program without a console.
void showMessage(const std::string& title, const std::string& text, bool isError);

} // namespace windows_ports
