#include "settings/AppState.h"

#include <QCoreApplication>

namespace quellbox {

std::array<QString, 8> MakeFilterCaptions() {
    std::array<QString, 8> captions;
    captions[1] = QCoreApplication::translate("quellbox", " (just today)");
    captions[2] = QCoreApplication::translate("quellbox", " (in two days)");
    captions[7] = QCoreApplication::translate("quellbox", " (one week)");
    return captions;
}

QString SmtpAccount(const AppState& state) {
    return QStringLiteral("smtp:%1@%2:%3").arg(state.SmtpUser, state.SmtpHost.toLower()).arg(state.SmtpPort);
}

} // namespace quellbox
