#pragma once

#include "platform/SettingsStore.h"

#include <QString>

namespace quellbox {

/// Twips in one device-independent pixel (96 pixels to the inch).
constexpr int twipsPerPixel = 15;

/// Pixels as twips; the largest or smallest number of twips when there are too many.
int ToTwips(int pixels);

/// Twips as pixels, rounded to the nearest.
int ToPixels(int twips);

/// State, position and size of a form. A position or size of 0 stands for "compute it".
struct Placement {
    int windowState = 0; ///< 0 normal, 1 minimized, 2 maximized
    int left = 0;        ///< twips
    int top = 0;         ///< twips
    int width = 0;       ///< twips
    int height = 0;      ///< twips

    bool operator==(const Placement&) const = default;
};

/// Fills in what is 0 in a stored placement: two thirds of the screen, centred across and in the upper third. The
/// size of the screen is in twips. The result is not forced onto the screen.
Placement ComputePlacement(Placement stored, int screenWidth, int screenHeight);

/// The stored placement of a form. What is absent, not a number, or beyond the range of the numbers reads as 0; it is
/// thereby computed anew, and the stored text stays until the form is saved.
Placement ReadPlacement(const SettingsStore& store, const QString& formName);

/// Stores the placement of a form. The keys begin with its name without the first three characters ("frm").
void WritePlacement(SettingsStore& store, const QString& formName, const Placement& placement);

} // namespace quellbox
