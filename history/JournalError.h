#pragma once

#include "platform/RuntimeError.h"

namespace quellbox {

/// What is the matter with the database of the history.
enum class JournalProblem {
    Busy,    ///< another program writes to it, and does not end
    Full,    ///< there is no room on the disk
    Damaged, ///< it is no such database, or a part of it cannot be read
    Newer,   ///< a newer version of the program has made it, or it cannot be used for another lasting reason
    Other,
};

/// The database of the history cannot be read or written.
class JournalError : public RuntimeError {
public:
    JournalError(JournalProblem problem, const QString& reason) : RuntimeError(reason), problem_(problem) {}

    JournalProblem Problem() const { return problem_; }

private:
    JournalProblem problem_;
};

} // namespace quellbox
