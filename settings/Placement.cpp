#include "settings/Placement.h"

#include "platform/RuntimeError.h"
#include "settings/SettingsTable.h"
#include "settings/TextConversion.h"

#include <algorithm>
#include <limits>

namespace quellbox {
namespace {

QString PlacementKey(const QString& formName, const char* word) {
    return formName.mid(3) + QLatin1String(word);
}

/// An absurd number in a hand-edited store must not keep a window from opening: it counts as absent, and nothing is
/// lost, because a computed placement takes its place.
template <typename Convert>
int ReadNumber(const SettingsStore& store, const QString& key, Convert convert) {
    try {
        return convert(ReadSetting(store, key, QStringLiteral("0")));
    } catch (const OverflowError&) {
        return 0;
    }
}

} // namespace

int ToTwips(int pixels) {
    using Limits = std::numeric_limits<int>;
    return int(std::clamp<qint64>(qint64(pixels) * twipsPerPixel, Limits::min(), Limits::max()));
}

int ToPixels(int twips) {
    const int half = twips < 0 ? -twipsPerPixel / 2 : twipsPerPixel / 2;
    return int((qint64(twips) + half) / twipsPerPixel);
}

Placement ComputePlacement(Placement stored, int screenWidth, int screenHeight) {
    // Wider arithmetic: a hand-edited size may be anything that 32 bits hold. The division of integers truncates.
    const qint64 wide = screenWidth;
    const qint64 high = screenHeight;
    if (stored.width == 0) {
        stored.width = int(2 * wide / 3);
    }
    if (stored.left == 0) {
        stored.left = int((wide - stored.width) / 2);
    }
    if (stored.height == 0) {
        stored.height = int(2 * high / 3);
    }
    if (stored.top == 0) {
        // By 3 and not by 2 on purpose: a new window stands in the upper third of the screen.
        stored.top = int((high - stored.height) / 3);
    }
    return stored;
}

Placement ReadPlacement(const SettingsStore& store, const QString& formName) {
    const auto read = [&](const char* word) { return ReadNumber(store, PlacementKey(formName, word), ToInteger32); };
    Placement placement;
    placement.windowState = ReadNumber(store, PlacementKey(formName, "WindowState"), ToInteger16);
    placement.left = read("Left");
    placement.top = read("Top");
    placement.width = read("Width");
    placement.height = read("Height");
    return placement;
}

void WritePlacement(SettingsStore& store, const QString& formName, const Placement& placement) {
    const auto write = [&](const char* word, int value) {
        WriteSetting(store, PlacementKey(formName, word), QString::number(value));
    };
    write("WindowState", placement.windowState);
    write("Left", placement.left);
    write("Top", placement.top);
    write("Width", placement.width);
    write("Height", placement.height);
}

} // namespace quellbox
