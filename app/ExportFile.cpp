#include "app/ExportFile.h"

#include "mail/DisplayText.h"
#include "settings/frmMessageBox.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace quellbox {

namespace {

bool HasKnownEnding(const QString& name) {
    return name.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive) ||
           name.endsWith(QLatin1String(".jsonl"), Qt::CaseInsensitive);
}

/// The name that was chosen, with the ending of the chosen form where none was typed.
QString ChosenFile(const QFileDialog& dialog, const QString& csvFilter) {
    QString name = dialog.selectedFiles().value(0);
    if (name.isEmpty() || HasKnownEnding(name)) {
        return name;
    }
    return name + (dialog.selectedNameFilter() == csvFilter ? QLatin1String(".csv") : QLatin1String(".jsonl"));
}

bool MayReplace(const QString& file, QWidget* parent) {
    if (!QFileInfo::exists(file)) {
        return true;
    }
    const QString name = CleanseForDisplay(QDir::toNativeSeparators(file));
    return AskInMessageBox(
        QMessageBox::Warning,
        {QStringLiteral("msgReplace"), QStringLiteral("Quellbox"),
         QCoreApplication::translate("quellbox", "There is a file %1 already. Replace it?").arg(name)},
        parent);
}

} // namespace

// The dialog's own question would be about a name without its ending.
QString AskExportFile(QWidget* parent, const QString& proposedName) {
    const QString csvFilter = QStringLiteral("CSV (*.csv)");
    QFileDialog dialog(parent, QCoreApplication::translate("quellbox", "Export"));
    dialog.setObjectName(QStringLiteral("dlgExport"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setNameFilters({csvFilter, QStringLiteral("JSON Lines (*.jsonl)")});
    dialog.selectFile(proposedName);
    while (dialog.exec() == QDialog::Accepted) {
        QString file = ChosenFile(dialog, csvFilter);
        if (!file.isEmpty() && MayReplace(file, parent)) {
            return file;
        }
    }
    return {};
}

} // namespace quellbox
