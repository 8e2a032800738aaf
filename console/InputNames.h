#pragma once

#include <QStringList>

namespace quellbox {

/// The names of files on the standard input, each ended by `end`; empty ones are left out. Where a line ends one, a
/// carriage return before it is no part of it on Windows.
QStringList InputNames(char end);

} // namespace quellbox
