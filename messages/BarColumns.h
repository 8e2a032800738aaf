#pragma once

#include "messages/BarPicture.h"

namespace quellbox {

/// Columns beside each other, made of the parts of their bars; see LayOutPicture().
BarPicture LayOutColumns(const OverviewPicture& picture, QSizeF size, const PictureFont& font);

/// A step for an axis that goes up to `most` with no more than `steps` steps: 1, 2 or 5, times a power of ten.
qint64 StepOfAxis(qint64 most, int steps);

} // namespace quellbox
