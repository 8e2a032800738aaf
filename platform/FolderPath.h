#pragma once

#include <QString>

namespace quellbox {

/// True for a text that can only be meant as a UNC path, even an incomplete one.
bool IsShareText(const QString& path);

/// The separator between the names of a path: a backslash in a UNC path, otherwise the platform's own.
QChar SeparatorOf(const QString& path);

/// The path of a folder. It ends with its separator, so that no path can be made that names a file beside the folder.
/// On Windows a slash at the end of a local path will do. An empty text means that there is no folder, and stays empty.
class Folder {
public:
    Folder() = default;

    /// Appends the separator where it is missing.
    Folder(const QString& path);

    /// The path with the separator at its end.
    const QString& Text() const { return text_; }
    operator const QString&() const { return text_; }

    bool IsEmpty() const { return text_.isEmpty(); }

    /// The path of what is called `name` in the folder.
    QString PathOf(const QString& name) const { return text_ + name; }

    friend bool operator==(const Folder& left, const Folder& right) { return left.text_ == right.text_; }
    friend bool operator==(const Folder& left, const QString& right) { return left.text_ == right; }

private:
    QString text_;
};

/// The root of an absolute local path, "/" or as in "C:\"; empty for other paths.
QString RootOf(const QString& path);

/// How the names of local files are compared: on Windows without regard to case.
Qt::CaseSensitivity CaseOfPaths();

} // namespace quellbox
