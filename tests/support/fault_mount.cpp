// A mounted folder that is as slow as a share and has its faults, for tests and benchmarks: it shows a real folder, and
// each call takes the time and goes wrong in the way that it is told. Runs in the foreground, prints "ready" when it is
// mounted, and unmounts on SIGTERM.
#include "tests/support/fault_mount/Connection.h"
#include "tests/support/fault_mount/PassThrough.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <map>
#include <thread>

#include <getopt.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quellbox;

namespace {

// More than any program has callers, so that each of them waits for its own call only.
constexpr unsigned mostThreads = 256;

constexpr const char* usage =
    "usage: quellbox_fault_mount [options] FOLDER MOUNT\n"
    "  --delay MS        how long each call takes\n"
    "  --no-links        lacks hard links\n"
    "  --no-noreplace    lacks a rename that does not replace\n"
    "  --refuses-open    refuses to rename or remove a file that is open\n"
    "  --separate        nothing is renamed from one folder into another\n"
    "  --rules FILE      what goes wrong while the file says so, as in \"hang unlink *\"\n"
    "  --ending TEXT     files named *.EML that end otherwise after a call are counted as incomplete\n"
    "  --counts FILE     where the numbers of calls are written to, on SIGUSR1 and in the end\n";

struct Options {
    std::chrono::milliseconds delay{0};
    Traits traits;
    std::string rules;
    std::string counts;
    std::string folder;
    std::string mount;
};

[[noreturn]] void Refuse() {
    std::fputs(usage, stderr);
    std::exit(2);
}

Options ReadOptions(int argc, char** argv) {
    constexpr std::array<option, 9> known{{{"delay", required_argument, nullptr, 'd'},
                                           {"no-links", no_argument, nullptr, 'l'},
                                           {"no-noreplace", no_argument, nullptr, 'n'},
                                           {"refuses-open", no_argument, nullptr, 'o'},
                                           {"separate", no_argument, nullptr, 's'},
                                           {"rules", required_argument, nullptr, 'r'},
                                           {"ending", required_argument, nullptr, 'e'},
                                           {"counts", required_argument, nullptr, 'c'},
                                           {nullptr, 0, nullptr, 0}}};
    Options options;
    const std::map<int, std::function<void()>> take{
        {'d', [&] { options.delay = std::chrono::milliseconds(std::atoi(optarg)); }},
        {'l', [&] { options.traits.links = false; }},
        {'n', [&] { options.traits.noReplace = false; }},
        {'o', [&] { options.traits.refusesOpen = true; }},
        {'s', [&] { options.traits.separate = true; }},
        {'r', [&] { options.rules = optarg; }},
        {'e', [&] { options.traits.ending = optarg; }},
        {'c', [&] { options.counts = optarg; }},
        {'?', Refuse}};
    for (int found = 0; (found = ::getopt_long(argc, argv, "", known.data(), nullptr)) != -1;) {
        take.at(found)();
    }
    if (argc - optind != 2) {
        Refuse();
    }
    options.folder = argv[optind];
    options.mount = argv[optind + 1];
    return options;
}

/// Each file that the kernel knows is held open.
void AllowManyOpenFiles() {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

/// Writes the counts on each SIGUSR1, and in the end.
class CountsWriter {
public:
    CountsWriter(std::string file, Turnstile& turnstile) : file_(std::move(file)), turnstile_(turnstile) {
        // Everything that ends the program is for the thread that unmounts; threads begin with the signals of their
        // maker.
        sigset_t all;
        sigfillset(&all);
        sigset_t before;
        ::pthread_sigmask(SIG_SETMASK, &all, &before);
        thread_ = std::thread([this] { Run(); });
        sigaddset(&before, SIGUSR1);
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }

    ~CountsWriter() {
        ending_ = true;
        ::pthread_kill(thread_.native_handle(), SIGUSR1);
        thread_.join();
    }

    CountsWriter(const CountsWriter&) = delete;
    CountsWriter& operator=(const CountsWriter&) = delete;

private:
    void Run() {
        sigset_t wanted;
        sigemptyset(&wanted);
        sigaddset(&wanted, SIGUSR1);
        do {
            int signal = 0;
            ::sigwait(&wanted, &signal);
            Write();
        } while (!ending_);
    }

    /// Under another name at first, so that nobody reads half of it.
    void Write() {
        if (file_.empty()) {
            return;
        }
        const std::string fresh = file_ + ".new";
        std::ofstream(fresh) << turnstile_.Counts() << "told " << ++told_ << '\n';
        std::rename(fresh.c_str(), file_.c_str());
    }

    std::string file_;
    Turnstile& turnstile_;
    int told_ = 0;
    std::atomic<bool> ending_ = false;
    std::thread thread_;
};

int Serve(fuse_session* session) {
    fuse_loop_config* config = fuse_loop_cfg_create();
    fuse_loop_cfg_set_max_threads(config, mostThreads);
    fuse_loop_cfg_set_idle_threads(config, mostThreads);
    const int result = fuse_session_loop_mt(session, config);
    fuse_loop_cfg_destroy(config);
    return result < 0 ? 1 : 0;
}

int MountAndServe(fuse_session* session, const Options& options, Turnstile& turnstile) {
    const CountsWriter writer(options.counts, turnstile);
    if (fuse_session_mount(session, options.mount.c_str()) != 0) {
        return 1;
    }
    if (!ComeBetween(session)) {
        fuse_session_unmount(session);
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    const int result = Serve(session);
    fuse_session_unmount(session);
    return result;
}

/// Takes the folder away from its place; what is open there can still be used.
void Detach(const std::string& mount) {
    if (::umount2(mount.c_str(), MNT_DETACH) == 0) {
        return;
    }
    const std::string command = "fusermount3 -uz '" + mount + "'"; // for those who are not allowed to
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "quellbox_fault_mount: %s cannot be unmounted\n", mount.c_str());
    }
}

int Run(const Options& options) {
    fuse_session* session = nullptr;
    Turnstile turnstile({options.delay, options.rules, [&session] { return fuse_session_exited(session) != 0; },
                         [&options] { Detach(options.mount); }});
    PassThrough files(options.folder, options.traits, turnstile);
    std::array<char*, 3> words{const_cast<char*>("quellbox_fault_mount"), const_cast<char*>("-o"),
                               const_cast<char*>("fsname=quellbox_fault_mount")};
    fuse_args arguments = FUSE_ARGS_INIT(static_cast<int>(words.size()), words.data());
    const fuse_lowlevel_ops operations = PassThroughOperations();
    session = fuse_session_new(&arguments, &operations, sizeof operations, &files);
    fuse_opt_free_args(&arguments);
    if (session == nullptr || fuse_set_signal_handlers(session) != 0) {
        return 1;
    }
    const int result = MountAndServe(session, options, turnstile);
    fuse_remove_signal_handlers(session);
    fuse_session_destroy(session);
    return result;
}

} // namespace

int main(int argc, char** argv) {
    const Options options = ReadOptions(argc, argv);
    AllowManyOpenFiles();
    ::umask(0); // the kernel has applied that of the caller
    try {
        return Run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quellbox_fault_mount: %s\n", error.what());
        return 1;
    }
}
