#pragma once

#include "console/Session.h"

#include <QStringList>

namespace quellbox {

/// The names of files on the standard input, each ended by `end`; empty ones are left out. Where a line ends one, a
/// carriage return before it is no part of it on Windows. Throws CommandError when the input cannot be read to its end,
/// or the user ends it.
QStringList InputNames(Session& session, char end);

} // namespace quellbox
