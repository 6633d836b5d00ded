#pragma once

#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>
#include <functional>
#include <string>

/// A Wine of the tests' own: a prefix in a temporary folder, without a display. It takes some ten seconds to
/// make, so there is one for the whole run.
class Wine {
  public:
    /// Throws std::runtime_error with what does not work. `programs` is the folder of the Windows programs.
    explicit Wine(const QString& programs);
    Wine(const Wine&) = delete;
    Wine& operator=(const Wine&) = delete;
    /// Ends whatever still runs in the prefix.
    ~Wine();

    /// The one of this run. Throws where there is none.
    static Wine& instance();

    /// The path of a Windows program, checked to be there.
    QString program(const QString& file) const;
    const QProcessEnvironment& environment() const { return environment_; }
    /// Of the prefix.
    std::filesystem::path folder() const;
    /// Runs a program of Wine's own to its end; throws when it fails.
    void run(const QString& command, const QStringList& arguments, int milliseconds = 30'000) const;
    /// The process of the Wine server, which holds every handle of every program.
    int serverProcess() const;

  private:
    QString programs_;
    QTemporaryDir folder_;
    QProcessEnvironment environment_;
};

/// A Windows program that runs in the tests' Wine, as long as this object lives.
class WindowsProgram {
  public:
    explicit WindowsProgram(const QString& file, const QStringList& arguments = {});
    WindowsProgram(const WindowsProgram&) = delete;
    WindowsProgram& operator=(const WindowsProgram&) = delete;
    ~WindowsProgram();

    /// Writes a line to its standard input, at once.
    void tell(const std::string& line);
    /// The next line that begins with this text, or has it somewhere, waited for; the lines before it are
    /// forgotten. Empty, and a failure of the test, when none comes.
    std::string line(const std::string& beginning);
    std::string lineWith(const std::string& part);
    /// Whether it has ended, waited for.
    bool ends();
    /// As `kill -9` does.
    void kill();

  private:
    std::string find(const std::string& what, const std::function<bool(const std::string&)>& fits);

    QProcess process_;
    std::string output_;
};

/// Runs the event loop until the condition holds, looking after each event. False when it never did.
bool waitFor(const std::function<bool()>& condition, int milliseconds = 20000);
