#pragma once

#include "samples/Random.h"

#include <QByteArray>

namespace quellbox::samples {

/// A file that is no proper message: empty, binary, cut off and the like.
QByteArray MakeBrokenFile(Random& random);

} // namespace quellbox::samples
