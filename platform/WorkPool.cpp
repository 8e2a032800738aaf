#include "platform/WorkPool.h"

#include <QDeadlineTimer>

#include <algorithm>

#ifdef __MINGW32__
#include <cxxabi.h>

// NOLINTNEXTLINE(bugprone-reserved-identifier): the compiler's name for this program
extern "C" void* __dso_handle;
#endif

namespace quellbox {

namespace {

// So many calls of a share overlap that its delay hardly counts; more make no listing faster.
constexpr int mostOfSeries = 64;

// Those who click their way through a share that stalls still get an answer from another one.
constexpr int mostSingle = 8;

// Whoever meets that many calls that hang will not be helped by more threads.
constexpr int mostAside = 256;

#ifdef __MINGW32__
/// As libstdc++ has it, the memory of thread_local objects is freed when a thread ends, and the objects are destroyed,
/// in the order in which both were used first in the program: nearly always the wrong one. Qt's regular expressions,
/// for one, have such an object, and a thread that has used one crashes when it ends. So before anything else an object
/// is announced that is none. Where the program is linked with the runtime's own functions, it does no harm.
[[gnu::constructor(101)]] void DestroyThreadLocalsBeforeTheirMemoryGoes() {
    __cxxabiv1::__cxa_thread_atexit([](void*) {}, nullptr, &__dso_handle);
}
#endif

} // namespace

ThreadWorkPool::ThreadWorkPool() {
    Threads(Kind::Single).setMaxThreadCount(mostSingle);
    Threads(Kind::Series).setMaxThreadCount(mostOfSeries);
    Threads(Kind::Journal).setMaxThreadCount(1);
    Threads(Kind::Journal).setExpiryTimeout(-1); // a database belongs to the thread that has opened it
}

int ThreadWorkPool::Most(Kind kind) const {
    return threads_[static_cast<size_t>(kind)].maxThreadCount();
}

void ThreadWorkPool::Start(Kind kind, std::function<void()> work) {
    Threads(kind).start(std::move(work));
}

bool ThreadWorkPool::SetAside(Kind kind) {
    if (++aside_ > mostAside) {
        --aside_;
        return false;
    }
    Threads(kind).releaseThread();
    return true;
}

void ThreadWorkPool::TakeBack(Kind kind) {
    --aside_;
    Threads(kind).reserveThread();
}

void ThreadWorkPool::SetMost(int count) {
    Threads(Kind::Single).setMaxThreadCount(count);
    Threads(Kind::Series).setMaxThreadCount(count);
}

bool ThreadWorkPool::WaitForDone(std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    return std::all_of(threads_.begin(), threads_.end(), [&deadline](QThreadPool& threads) {
        return threads.waitForDone(static_cast<int>(deadline.remainingTime()));
    });
}

void ThreadWorkPool::WaitForDone() {
    for (QThreadPool& threads : threads_) {
        threads.waitForDone();
    }
}

} // namespace quellbox
