// Runs a program for a test, and in the end ends everything that it has started, daemons that have left their parents
// included, and unmounts what is mounted in its folder. The end comes when the program ends, on SIGTERM, and when the
// test that has started this ends, however that happens. On SIGUSR1 nothing gets the time to tidy up, as in a crash.
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds untilKilled{1};
constexpr std::chrono::seconds patience{5};
constexpr timespec betweenLooks{0, 5'000'000};

/// The parent of a process, as the kernel tells it; 0 when the process has gone.
pid_t ParentOf(const std::string& process) {
    std::ifstream file("/proc/" + process + "/stat");
    std::string text;
    std::getline(file, text);
    // The name of the program stands in parentheses and may hold anything.
    const size_t end = text.rfind(')');
    pid_t parent = 0;
    char state = 0;
    if (end != std::string::npos) {
        std::istringstream(text.substr(end + 1)) >> state >> parent;
    }
    return parent;
}

/// The children of this process; whoever loses its parent becomes one.
std::vector<pid_t> Children() {
    std::vector<pid_t> children;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", ignored)) {
        const std::string name = entry.path().filename();
        if (std::all_of(name.begin(), name.end(), [](char letter) { return letter >= '0' && letter <= '9'; }) &&
            ParentOf(name) == ::getpid()) {
            children.push_back(std::stoi(name));
        }
    }
    return children;
}

/// Takes note of those that have ended; false when no child is left.
bool HasChildren() {
    pid_t ended = 0;
    do {
        ended = ::waitpid(-1, nullptr, WNOHANG);
    } while (ended > 0);
    return ended == 0;
}

/// Sends the signal to all children, and to those who become children thereby, until none is left or the time is up.
void EndChildren(int signal, std::chrono::milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    std::vector<pid_t> told;
    while (HasChildren() && Clock::now() < deadline) {
        for (const pid_t child : Children()) {
            if (std::find(told.begin(), told.end(), child) == told.end()) {
                ::kill(child, signal);
                told.push_back(child);
            }
        }
        ::nanosleep(&betweenLooks, nullptr);
    }
}

/// The mount points below `folder`, the latest first.
std::vector<std::string> MountsIn(const std::string& folder) {
    std::ifstream table("/proc/self/mountinfo");
    std::vector<std::string> mounts;
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string point;
        for (int field = 0; field < 5; ++field) {
            fields >> point;
        }
        if (point.compare(0, folder.size() + 1, folder + '/') == 0) {
            mounts.insert(mounts.begin(), point);
        }
    }
    return mounts;
}

/// Only root may do it alone.
void Unmount(const std::string& point) {
    if (::umount2(point.c_str(), MNT_DETACH) == 0) {
        return;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::execlp("fusermount3", "fusermount3", "-u", "-z", "-q", point.c_str(), nullptr);
        ::_exit(127);
    }
    ::waitpid(child, nullptr, 0);
}

[[noreturn]] void Become(char** command) {
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::setsid(); // some programs end their whole process group
    const int nothing = ::open("/dev/null", O_RDONLY);
    ::dup2(nothing, STDIN_FILENO);
    ::execvp(command[0], command);
    std::perror(command[0]);
    ::_exit(127);
}

/// Waits for the end; returns the signal that was the reason.
int WaitForEnd(const sigset_t& wanted, pid_t program) {
    for (;;) {
        int signal = 0;
        ::sigwait(&wanted, &signal);
        if (signal != SIGCHLD) {
            return signal;
        }
        for (pid_t ended = 0; (ended = ::waitpid(-1, nullptr, WNOHANG)) > 0;) {
            if (ended == program) {
                return SIGCHLD;
            }
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("usage: quellbox_keeper FOLDER PROGRAM [ARGUMENT]...\n", stderr);
        return 2;
    }
    sigset_t wanted;
    sigemptyset(&wanted);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGCHLD}) {
        sigaddset(&wanted, signal);
    }
    ::sigprocmask(SIG_BLOCK, &wanted, nullptr);
    const pid_t parent = ::getppid();
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    if (::getppid() != parent) {
        return 1; // which has ended already
    }
    const pid_t program = ::fork();
    if (program == 0) {
        Become(argv + 2);
    }
    const int reason = program > 0 ? WaitForEnd(wanted, program) : SIGTERM;
    if (reason != SIGUSR1) {
        EndChildren(SIGTERM, untilKilled);
    }
    EndChildren(SIGKILL, patience);
    const std::vector<std::string> mounts = MountsIn(argv[1]);
    std::for_each(mounts.begin(), mounts.end(), Unmount);
    // What hung in a call to such a mount can end only now.
    EndChildren(SIGKILL, patience);
    return 0;
}
