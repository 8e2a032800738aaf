#pragma once

#include <QString>

#include <limits>

namespace quellbox {

/// The level of a message without a rating, or with one that is no number; it comes before every other one.
constexpr int noRatingLevel = std::numeric_limits<int>::min();

/// The level of a rating (text of the column "SCL%"), coarse enough for a picture. Where ratings are numbers, which
/// filters do not limit, a level is a span of five points, with one for all below 0 and one for 50 and more. Else the
/// whole number that the text begins with is the level, as in "9 99.90".
int RatingLevelOf(QStringView rating, bool ratesByNumber);

/// What the user reads of a level.
QString RatingLevelText(int level, bool ratesByNumber);

} // namespace quellbox
