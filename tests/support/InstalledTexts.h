#pragma once

#include "settings/Translation.h"

#include <QApplication>
#include <QTranslator>

namespace quellbox {

/// Installs the translation for some languages, and takes it away with itself.
class InstalledTexts {
public:
    explicit InstalledTexts(const QStringList& languages) : installed_(InstallTranslation(*qApp, languages)) {}

    ~InstalledTexts() {
        for (QTranslator* translator : qApp->findChildren<QTranslator*>()) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
    }

    InstalledTexts(const InstalledTexts&) = delete;
    InstalledTexts& operator=(const InstalledTexts&) = delete;

    bool Installed() const { return installed_; }

private:
    bool installed_;
};

} // namespace quellbox
