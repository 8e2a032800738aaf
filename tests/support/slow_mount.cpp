// A mounted folder that is as slow as a share, for tests and benchmarks: it shows a real folder, and each call takes
// the time that it is told. Runs in the foreground, prints "ready" when it is mounted, and unmounts on SIGTERM.
#include "tests/support/slow_mount/Connection.h"
#include "tests/support/slow_mount/PassThrough.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <thread>

#include <getopt.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quellbox;

namespace {

// More than any program has callers, so that each of them waits for its own call only.
constexpr unsigned mostThreads = 256;

constexpr const char* usage = "usage: quellbox_slow_mount [options] FOLDER MOUNT\n"
                              "  --delay MS     how long each call takes\n"
                              "  --poor         neither hard links nor a rename that does not replace\n"
                              "  --rules FILE   what goes wrong while the file says so, as in \"hang unlink *\"\n"
                              "  --counts FILE  where the numbers of calls are written to, on SIGUSR1 and in the end\n";

struct Options {
    std::chrono::milliseconds delay{0};
    bool poor = false;
    std::string rules;
    std::string counts;
    std::string folder;
    std::string mount;
};

Options ReadOptions(int argc, char** argv) {
    constexpr std::array<option, 5> known{{{"delay", required_argument, nullptr, 'd'},
                                           {"poor", no_argument, nullptr, 'p'},
                                           {"rules", required_argument, nullptr, 'r'},
                                           {"counts", required_argument, nullptr, 'c'},
                                           {nullptr, 0, nullptr, 0}}};
    Options options;
    for (int found = 0; (found = ::getopt_long(argc, argv, "", known.data(), nullptr)) != -1;) {
        switch (found) {
        case 'd':
            options.delay = std::chrono::milliseconds(std::atoi(optarg));
            break;
        case 'p':
            options.poor = true;
            break;
        case 'r':
            options.rules = optarg;
            break;
        case 'c':
            options.counts = optarg;
            break;
        default:
            std::fputs(usage, stderr);
            std::exit(2);
        }
    }
    if (argc - optind != 2) {
        std::fputs(usage, stderr);
        std::exit(2);
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
    CountsWriter(std::string file, const Turnstile& turnstile) : file_(std::move(file)), turnstile_(turnstile) {
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
    void Write() const {
        if (file_.empty()) {
            return;
        }
        const std::string fresh = file_ + ".new";
        std::ofstream(fresh) << turnstile_.Counts();
        std::rename(fresh.c_str(), file_.c_str());
    }

    std::string file_;
    const Turnstile& turnstile_;
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

int MountAndServe(fuse_session* session, const Options& options, const Turnstile& turnstile) {
    const CountsWriter writer(options.counts, turnstile);
    if (fuse_session_mount(session, options.mount.c_str()) != 0) {
        return 1;
    }
    if (!LetLookupsOverlap(session)) {
        fuse_session_unmount(session);
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    const int result = Serve(session);
    fuse_session_unmount(session);
    return result;
}

int Run(const Options& options) {
    fuse_session* session = nullptr;
    Turnstile turnstile(options.delay, options.rules, [&session] { return fuse_session_exited(session) != 0; });
    PassThrough files(options.folder, options.poor, turnstile);
    std::array<char*, 3> words{const_cast<char*>("quellbox_slow_mount"), const_cast<char*>("-o"),
                               const_cast<char*>("fsname=quellbox_slow_mount")};
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
        std::fprintf(stderr, "quellbox_slow_mount: %s\n", error.what());
        return 1;
    }
}
