#pragma once

#include "messages/PictureSvg.h"

#include <QFont>
#include <QPainter>
#include <QPalette>

namespace quellbox {

/// What a picture has to know of a font of the desktop.
PictureFont FontOfPicture(const QFont& font);

/// The colours of a picture on a desktop of those colours: its own for text, ground and bars. Levels go from blue to
/// red by violet, which those who do not see colours well tell apart as well, in shades that stand out from a light or
/// a dark ground. On black, bars have outlines.
PictureColours ColoursOf(const QPalette& palette);

/// Paints the shapes; the ground is the caller's.
void PaintPicture(QPainter& painter, const BarPicture& picture, const PictureColours& colours);

} // namespace quellbox
