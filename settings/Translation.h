#pragma once

#include <QStringList>

class QCoreApplication;

namespace quellbox {

/// Gives the program's texts, and Qt's own, the first of the languages (as in "de-AT", the preferred one first) that
/// there is a translation for. English stays untranslated. Returns whether a translation was installed; call it once,
/// before any text is asked for.
bool InstallTranslation(QCoreApplication& application, const QStringList& languages);

} // namespace quellbox
