#pragma once

#include <QString>

namespace quellbox {

/// True for a text that can only be meant as a UNC path, even an incomplete one.
bool IsShareText(const QString& path);

/// What stands between the names of a path: a backslash in a UNC path, otherwise the platform's own.
QChar SeparatorOf(const QString& path);

/// The folder with a separator at its end, so that names can be appended to it. Windows takes a slash in a local path.
QString WithSeparator(const QString& folder);

/// The path of what is called `name` in a folder.
QString PathBelow(const QString& folder, const QString& name);

/// The root of an absolute local path, "/" or as in "C:\"; empty for other paths.
QString RootOf(const QString& path);

/// How the names of local files are compared: on Windows without regard to case.
Qt::CaseSensitivity CaseOfPaths();

} // namespace quellbox
