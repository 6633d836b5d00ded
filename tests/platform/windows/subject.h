#pragma once

#include <string>

/// A controller with a watchdog and one coil on, in a process of its own: it then waits, crashes, aborts or
/// hangs, as `end` says.
int runSubject(const std::string& end);
