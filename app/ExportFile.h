#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace quellbox {

/// Asks where a table is to be written, and whether a file of that name may be replaced. The name that comes back ends
/// with .csv or .jsonl, as WriteTable() wants it; it is empty when the user wants none. The dialog is called
/// "dlgExport", the question "msgReplace".
QString AskExportFile(QWidget* parent, const QString& proposedName);

/// A form of files: its name as people know it, and how the names of its files end, without a dot.
struct ExportForm {
    QString name;
    QString ending;
};

/// The same for files of other forms, of which the first is proposed. The name ends as one of them.
QString AskExportFile(QWidget* parent, const QString& proposedName, const std::vector<ExportForm>& forms);

} // namespace quellbox
