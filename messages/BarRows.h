#pragma once

#include "messages/BarPicture.h"

namespace quellbox {

/// Bars below each other; see LayOutPicture().
BarPicture LayOutRows(const OverviewPicture& picture, QSizeF size, const PictureFont& font);

} // namespace quellbox
