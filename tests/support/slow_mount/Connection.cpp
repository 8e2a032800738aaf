#include "tests/support/slow_mount/Connection.h"

#include <cstdint>

#include <linux/fuse.h>
#include <sys/uio.h>
#include <unistd.h>

namespace quellbox {

namespace {

// The kernel's first request, which the thread that has read it answers.
thread_local std::uint64_t startRequest = 0;

ssize_t ReadRequest(int file, void* buffer, size_t capacity, void*) {
    const ssize_t count = ::read(file, buffer, capacity);
    if (count >= static_cast<ssize_t>(sizeof(fuse_in_header))) {
        const auto* header = static_cast<const fuse_in_header*>(buffer);
        startRequest = header->opcode == FUSE_INIT ? header->unique : 0;
    }
    return count;
}

ssize_t WriteAnswer(int file, iovec* pieces, int count, void*) {
    if (startRequest != 0 && count > 1 && static_cast<const fuse_out_header*>(pieces[0].iov_base)->error == 0 &&
        static_cast<const fuse_out_header*>(pieces[0].iov_base)->unique == startRequest) {
        static_cast<fuse_init_out*>(pieces[1].iov_base)->flags |= FUSE_PARALLEL_DIROPS;
    }
    return ::writev(file, pieces, count);
}

} // namespace

bool LetLookupsOverlap(fuse_session* session) {
    fuse_custom_io io{};
    io.read = ReadRequest;
    io.writev = WriteAnswer;
    return fuse_session_custom_io(session, &io, fuse_session_fd(session)) == 0;
}

} // namespace quellbox
