#include "tests/support/fault_mount/Connection.h"

#include <csignal>
#include <cstdint>

#include <linux/fuse.h>
#include <sys/uio.h>
#include <unistd.h>

namespace quellbox {

namespace {

// The kernel's first request, which the thread that has read it answers.
thread_local std::uint64_t startRequest = 0;

thread_local bool losesAnswer = false;
thread_local int errorInstead = 0;

ssize_t ReadRequest(int file, void* buffer, size_t capacity, void*) {
    const ssize_t count = ::read(file, buffer, capacity);
    if (count >= static_cast<ssize_t>(sizeof(fuse_in_header))) {
        const auto* header = static_cast<const fuse_in_header*>(buffer);
        startRequest = header->opcode == FUSE_INIT ? header->unique : 0;
    }
    return count;
}

/// Answers with an error alone. The library is told that all of its answer was written.
ssize_t WriteError(int file, const iovec* pieces, int count) {
    fuse_out_header header = *static_cast<const fuse_out_header*>(pieces[0].iov_base);
    header.len = sizeof header;
    header.error = -errorInstead;
    if (::write(file, &header, sizeof header) < 0) {
        return -1;
    }
    size_t all = 0;
    for (int piece = 0; piece < count; ++piece) {
        all += pieces[piece].iov_len;
    }
    return static_cast<ssize_t>(all);
}

ssize_t WriteAnswer(int file, iovec* pieces, int count, void*) {
    if (losesAnswer) {
        if (errorInstead == 0) {
            ::kill(::getpid(), SIGKILL);
        }
        return WriteError(file, pieces, count);
    }
    if (startRequest != 0 && count > 1 && static_cast<const fuse_out_header*>(pieces[0].iov_base)->error == 0 &&
        static_cast<const fuse_out_header*>(pieces[0].iov_base)->unique == startRequest) {
        static_cast<fuse_init_out*>(pieces[1].iov_base)->flags |= FUSE_PARALLEL_DIROPS;
    }
    return ::writev(file, pieces, count);
}

} // namespace

bool ComeBetween(fuse_session* session) {
    fuse_custom_io io{};
    io.read = ReadRequest;
    io.writev = WriteAnswer;
    return fuse_session_custom_io(session, &io, fuse_session_fd(session)) == 0;
}

LostAnswer::LostAnswer(int error) {
    losesAnswer = true;
    errorInstead = error;
}

LostAnswer::~LostAnswer() {
    losesAnswer = false;
}

bool LostAnswer::IsLost() {
    return losesAnswer;
}

} // namespace quellbox
