#pragma once

#include <QString>

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

/// A call of the file system failed; the path and the system's reason are part of the text.
class FileError : public RuntimeError {
public:
    FileError(const QString& path, const QString& reason)
        : RuntimeError(path + QStringLiteral(": ") + reason), path_(path), reason_(reason) {}

    const QString& Path() const { return path_; }
    const QString& Reason() const { return reason_; }

private:
    QString path_;
    QString reason_;
};

} // namespace quellbox
