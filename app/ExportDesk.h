#pragma once

#include "app/WindowParts.h"
#include "messages/TableFile.h"

#include <QObject>

#include <functional>

namespace quellbox {

/// Takes the list into a file for other programs.
class ExportDesk : public QObject {
    Q_OBJECT

public:
    explicit ExportDesk(const WindowParts& parts);

    /// Asks for a file, and writes what the list shows into it.
    void mnuFileExport_Click();

    /// Writes a table into a file, beside the window, and calls `written` when that is done. A failure is told.
    void Write(const QString& file, const TableColumns& columns, const NextRow& rows,
               const std::function<void()>& written);

    /// The same with what `make` gives, which is called beside the window as well.
    void Write(const QString& file, const std::function<QByteArray()>& make, const std::function<void()>& written);

private:
    void WriteBeside(const std::function<void()>& write, const std::function<void()>& written);
    QString AskFile();
    void TellWritten(const QString& file, int count);

    WindowParts parts_;
};

} // namespace quellbox
