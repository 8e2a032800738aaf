#pragma once

#include "platform/RuntimeError.h"

namespace quellbox {

/// What the program answers to whoever has started it.
enum class ExitCode {
    Done = 0,
    SomeFailed = 1, ///< each message that failed was named
    WrongUsage = 2,
    Unreachable = 3, ///< the archive or the pickup directory
    Interrupted = 4
};

/// Ends a command with an exit code. The text, which may be empty, is told to the user.
class CommandError : public RuntimeError {
public:
    CommandError(ExitCode code, const QString& text) : RuntimeError(text), code_(code) {}

    ExitCode Code() const { return code_; }

private:
    ExitCode code_;
};

/// The command line cannot be meant.
class UsageError : public CommandError {
public:
    explicit UsageError(const QString& text) : CommandError(ExitCode::WrongUsage, text) {}
};

/// The archive or the pickup directory cannot be used.
class UnreachableError : public CommandError {
public:
    explicit UnreachableError(const QString& text) : CommandError(ExitCode::Unreachable, text) {}
};

} // namespace quellbox
