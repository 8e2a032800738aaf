#pragma once

#include "messages/BarPicture.h"

#include <QByteArray>

namespace quellbox {

/// The colours of a picture, as in "#1a2b3c".
struct PictureColours {
    QString background;
    QString text;
    QString faint;  ///< of lines that only help the eye
    QString bar;    ///< where there are no levels
    QString lowest; ///< of levels
    QString middle;
    QString highest;
    QString outline; ///< of bars; empty for none
};

/// The colour of a bar of that tone.
QString ColourOf(const PictureColours& colours, double tone);

/// The colour of the line around a bar; empty for none. Where bars touch, it divides them, but it is not to hide those
/// that are hardly higher than itself.
QString OutlineOf(const PictureColours& colours, const PictureShape& bar);

/// The font of a picture in a file.
struct PictureLettering {
    QString family;
    double pixels = 0; ///< size
};

/// A picture as SVG 1.1, with its title and, for those who do not see it, what its bars say.
QByteArray PictureSvg(const OverviewPicture& picture, const BarPicture& laidOut, const PictureColours& colours,
                      const PictureLettering& lettering);

} // namespace quellbox
