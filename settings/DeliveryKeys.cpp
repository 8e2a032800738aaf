#include "settings/DeliveryKeys.h"

namespace quellbox {

bool DeliveryKeys::IsKey(const QString& text) {
    return text == QLatin1String(pickup) || text == QLatin1String(replay) || text == QLatin1String(smtp) ||
           text == QLatin1String(command);
}

bool SecurityKeys::IsKey(const QString& text) {
    return text == QLatin1String(none) || text == QLatin1String(startTls) || text == QLatin1String(tls);
}

} // namespace quellbox
