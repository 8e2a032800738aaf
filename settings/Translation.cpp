#include "settings/Translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>

namespace quellbox {

bool InstallTranslation(QCoreApplication& application, const QStringList& languages) {
    for (const QString& language : languages) {
        // A user who prefers English gets it, also when another language that we have comes after it.
        if (language == QLatin1String("C") || language.section(QLatin1Char('-'), 0, 0) == QLatin1String("en")) {
            return false;
        }
        const QString name = QString(language).replace(QLatin1Char('-'), QLatin1Char('_'));
        auto ours = std::make_unique<QTranslator>(&application);
        if (!ours->load(QStringLiteral("quellbox_") + name, QStringLiteral(":/i18n"))) {
            continue;
        }
        auto qts = std::make_unique<QTranslator>(&application);
        const QString texts = QStringLiteral("qtbase_") + name;
        // A program that Qt is a part of brings Qt's texts along.
        if (qts->load(texts, QLibraryInfo::path(QLibraryInfo::TranslationsPath)) ||
            qts->load(texts, QStringLiteral(":/i18n"))) {
            QCoreApplication::installTranslator(qts.release());
        }
        QCoreApplication::installTranslator(ours.release());
        return true;
    }
    return false;
}

} // namespace quellbox
