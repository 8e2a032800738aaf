#pragma once

#ifdef __linux__

#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>

namespace quellbox {

/// A program that a test needs, with everything that it starts. All of it has ended, and what it has mounted in its
/// folder is unmounted, when the destructor returns; soon afterwards, when the test was killed.
class KeptProcess {
public:
    /// `folder` is the program's own: what is mounted below it is unmounted in the end.
    explicit KeptProcess(QString folder) : folder_(std::move(folder)) {}
    ~KeptProcess() { End(); }
    KeptProcess(const KeptProcess&) = delete;
    KeptProcess& operator=(const KeptProcess&) = delete;

    /// Starts a program with these variables besides those of the test.
    void Start(const QStringList& command, const QProcessEnvironment& environment);

    /// Whether the program runs, as far as this process has been told by now.
    bool IsRunning();

    /// Lets everything end.
    void End();

    /// Ends everything at once with SIGKILL.
    void Kill();

    /// The end of what the programs have written, in one line.
    QString LastWords();

private:
    void EndWith(int signal);

    QString folder_;
    QProcess process_;
};

/// Looks again and again whether `holds`; false when that takes too long.
bool WaitUntil(const std::function<bool()>& holds);

/// Where a program is, in the folders for those of the administrator as well; empty when it is not installed.
QString ProgramPath(const char* name);

} // namespace quellbox

#endif
