#pragma once

#include <QString>

class QWidget;

namespace quellbox {

/// Asks where a table is to be written, and whether a file of that name may be replaced. The name that comes back ends
/// with .csv or .jsonl, as WriteTable() wants it; it is empty when the user wants none. The dialog is called
/// "dlgExport", the question "msgReplace".
QString AskExportFile(QWidget* parent, const QString& proposedName);

} // namespace quellbox
