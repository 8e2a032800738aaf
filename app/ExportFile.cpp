#include "app/ExportFile.h"

#include "mail/DisplayText.h"
#include "settings/frmMessageBox.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include <algorithm>

namespace quellbox {

namespace {

QString FilterOf(const ExportForm& form) {
    return QStringLiteral("%1 (*.%2)").arg(form.name, form.ending);
}

bool HasKnownEnding(const QString& name, const std::vector<ExportForm>& forms) {
    return std::any_of(forms.begin(), forms.end(), [&name](const ExportForm& form) {
        return name.endsWith(QLatin1Char('.') + form.ending, Qt::CaseInsensitive);
    });
}

/// The name that was chosen, with the ending of the chosen form where none was typed.
QString ChosenFile(const QFileDialog& dialog, const std::vector<ExportForm>& forms) {
    QString name = dialog.selectedFiles().value(0);
    if (name.isEmpty() || HasKnownEnding(name, forms)) {
        return name;
    }
    const auto chosen = std::find_if(forms.begin(), forms.end(), [&dialog](const ExportForm& form) {
        return dialog.selectedNameFilter() == FilterOf(form);
    });
    return name + QLatin1Char('.') + (chosen == forms.end() ? forms.back() : *chosen).ending;
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

QString AskExportFile(QWidget* parent, const QString& proposedName) {
    return AskExportFile(
        parent, proposedName,
        {{QStringLiteral("CSV"), QStringLiteral("csv")}, {QStringLiteral("JSON Lines"), QStringLiteral("jsonl")}});
}

// The dialog's own question would be about a name without its ending.
QString AskExportFile(QWidget* parent, const QString& proposedName, const std::vector<ExportForm>& forms) {
    QStringList filters;
    for (const ExportForm& form : forms) {
        filters.append(FilterOf(form));
    }
    QFileDialog dialog(parent, QCoreApplication::translate("quellbox", "Export"));
    dialog.setObjectName(QStringLiteral("dlgExport"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setNameFilters(filters);
    dialog.selectFile(proposedName);
    while (dialog.exec() == QDialog::Accepted) {
        QString file = ChosenFile(dialog, forms);
        if (!file.isEmpty() && MayReplace(file, parent)) {
            return file;
        }
    }
    return {};
}

} // namespace quellbox
