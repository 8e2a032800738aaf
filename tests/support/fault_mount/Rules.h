#pragma once

#include "tests/support/fault_mount/Calls.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace quellbox {

/// What a rule lets happen to a call.
enum class Fault {
    None,
    Fail,     ///< it is answered with an error and not carried out
    Lose,     ///< it is carried out, and answered with an error
    Hang,     ///< it waits, and is carried out then
    Cut,      ///< a write: half of it is carried out, and every further write of that file fails
    Fill,     ///< a write: no more than `room` bytes of it are carried out
    Die,      ///< the program kills itself
    DieAfter, ///< the same once the call was carried out, without an answer
    Unmount   ///< the folder is taken away first
};

/// What becomes of one call.
struct Fate {
    Fault fault = Fault::None;
    int error = 0;    ///< an errno value; 0 when it is not answered with an error
    size_t room = 0;  ///< for Fault::Fill
    int forMs = 0;    ///< for Fault::Hang; 0 when until the rule is taken back
    std::string rule; ///< its line
};

/// The rules by which calls go wrong. They stand in a file, one in a line, and are read anew when the file has changed;
/// then counting begins anew. Lines that begin with "#" are none. The words of a rule are
///
///     what kinds name [error=EIO] [call=N | from=N] [ms=N] [bytes=N] [then]
///
/// - what: fail, lose, hang, cut, fill, die, die-after or unmount;
/// - kinds: those of the calls, as in "rename,link", or "*";
/// - name: that of the file without its folder, or "*";
/// - call=N: only the N-th of these calls; from=N: that one and all that follow; otherwise every one;
/// - ms=N: a hanging call goes on after that time, and not only when the rule is taken out of the file;
/// - bytes=N: so many may still be written;
/// - then: the rule holds only once the one before it has come true.
///
/// The first rule that comes true for a call is the one that holds. May be used by several threads.
class Rules {
public:
    /// An empty name, or that of a file that does not exist, stands for no rules.
    explicit Rules(std::string file) : file_(std::move(file)) {}

    /// What becomes of a call, which is counted. `bytes` is how many are to be written.
    Fate FateOf(Call call, std::string_view name, size_t bytes);

    /// Whether the file has this line at present.
    bool Has(const std::string& line);

    /// How often rules came true since the file has changed.
    std::uint64_t ComeTrue();

private:
    struct Rule {
        std::string line;
        Fault fault = Fault::None;
        std::string kinds;
        std::string name;
        int error = 0;
        std::uint64_t only = 0;
        std::uint64_t from = 0;
        int forMs = 0;
        size_t room = 0;
        bool then = false;
        std::uint64_t seen = 0;
        std::uint64_t cameTrue = 0;
        std::string cutName; ///< of the file that was cut off
    };

    static Rule Parse(const std::string& line);
    static bool Holds(Rule& rule, Call call, std::string_view name, size_t bytes);
    void ReadFile();

    const std::string file_;
    std::mutex mutex_;
    std::string text_;
    std::vector<Rule> rules_;
};

} // namespace quellbox
