#pragma once

#include <QString>

#include <exception>
#include <stdexcept>

namespace quellbox {

/// Base of the errors that end in a message box when nobody handles them earlier. `Text()` is what the user reads;
/// it says what happened and, where that helps, what to do.
class RuntimeError : public std::runtime_error {
public:
    explicit RuntimeError(const QString& text) : std::runtime_error(text.toStdString()), text_(text) {}

    const QString& Text() const { return text_; }

private:
    QString text_;
};

/// A number does not fit the type that holds it.
class OverflowError : public RuntimeError {
public:
    using RuntimeError::RuntimeError;
};

/// A text cannot be converted to the type that is wanted.
class TypeMismatchError : public RuntimeError {
public:
    using RuntimeError::RuntimeError;
};

/// What is the matter when a call of the file system fails, as far as the user can do something about it.
enum class FileProblem {
    Other,
    Missing,   ///< there is no such file
    Exists,    ///< the name is taken
    NoRight,   ///< this user may not
    NoRoom,    ///< the disk is full
    InUse,     ///< another program holds the file
    NoAnswer,  ///< the server does not answer, or is connected no more
    NotTaken,  ///< a mail server does not take the message, or cannot be asked
    Uncertain, ///< the message may have been delivered
    Packed     ///< a packed message, where only an unpacked one is understood
};

/// A call of the file system failed; the path and the system's reason are part of the text.
class FileError : public RuntimeError {
public:
    FileError(const QString& path, const QString& reason, FileProblem problem = FileProblem::Other)
        : RuntimeError(path + QStringLiteral(": ") + reason), path_(path), reason_(reason), problem_(problem) {}

    const QString& Path() const { return path_; }
    const QString& Reason() const { return reason_; }
    FileProblem Problem() const { return problem_; }

private:
    QString path_;
    QString reason_;
    FileProblem problem_;
};

/// What the user reads of something that was thrown.
inline QString TextOf(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const RuntimeError& error) {
        return error.Text();
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    }
}

} // namespace quellbox
