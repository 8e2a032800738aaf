#pragma once

#include <QString>

namespace quellbox {

/// The form of a path in which Windows takes it literally: of any length (not only up to 259 characters), with names
/// like "NUL.EML" or "a. " that would else be a device or be shortened. Both separators are understood, and the steps
/// "." and ".." are taken. Empty for a path that depends on a current drive or folder; one that already has such a
/// form, or names a device, is returned as it is.
QString LiteralWindowsPath(const QString& path);

} // namespace quellbox
