#pragma once

#include <stdexcept>
#include <string>

namespace runtime {

/// An error that ends a handler. Each kind has the number and the text that users read.
class RunTimeError : public std::runtime_error {
  public:
    RunTimeError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}
    int number() const { return number_; }

  private:
    int number_;
};

struct OverflowError : RunTimeError {
    OverflowError() : RunTimeError(6, "Overflow") {}
};

struct SubscriptError : RunTimeError {
    SubscriptError() : RunTimeError(9, "Subscript out of range") {}
};

struct DivisionByZero : RunTimeError {
    DivisionByZero() : RunTimeError(11, "Division by zero") {}
    /// `reason` names the faulty value for the user.
    explicit DivisionByZero(const std::string& reason) : RunTimeError(11, "Division by zero: " + reason) {}
};

struct TypeMismatch : RunTimeError {
    TypeMismatch() : RunTimeError(13, "Type mismatch") {}
};

struct BadRecordLength : RunTimeError {
    BadRecordLength() : RunTimeError(59, "Bad record length") {}
};

/// A file that cannot be opened, read or written; the text names it and the system's reason.
struct FileError : RunTimeError {
    explicit FileError(const std::string& text) : RunTimeError(75, text) {}
};

/// A device or another object outside the program refused a call; the text names it.
struct ObjectError : RunTimeError {
    explicit ObjectError(const std::string& text) : RunTimeError(440, text) {}
};

} // namespace runtime
