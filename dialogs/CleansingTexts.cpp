#include "dialogs/CleansingTexts.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

QString ParagraphBreak() {
    return QStringLiteral("\r\n\r\n");
}

} // namespace

QString CleansingIntroduction(const QString& archiveDir) {
    return QCoreApplication::translate("quellbox", "%1 contains all archived messages put here by the Exchange "
                                                   "Intelligent Message Filter.")
               .arg(archiveDir) +
           ParagraphBreak() +
           QCoreApplication::translate("quellbox", "This cleansing operation helps you to quickly, and permanently, "
                                                   "remove them.");
}

QString CleansingOptionTag(qint16 days) {
    switch (days) {
    case 1:
        return QCoreApplication::translate("quellbox", ", except those that arrived today.");
    case 2:
        return QCoreApplication::translate("quellbox", ", except those that arrived today and yesterday.");
    case 7:
        return QCoreApplication::translate("quellbox", ", except those that arrived during the last seven days.");
    default:
        return {};
    }
}

QString CleansingQuestion(const QString& archiveDir, qint16 days) {
    return QCoreApplication::translate("quellbox", "Clean up %1").arg(archiveDir) + ParagraphBreak() +
           QCoreApplication::translate("quellbox", "Press OK to remove them all permanently from your system") +
           CleansingOptionTag(days);
}

} // namespace quellbox
