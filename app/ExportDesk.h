#pragma once

#include "app/WindowParts.h"

#include <QObject>

namespace quellbox {

/// Takes the list into a file for other programs.
class ExportDesk : public QObject {
    Q_OBJECT

public:
    explicit ExportDesk(const WindowParts& parts);

    /// Asks for a file, and writes what the list shows into it.
    void mnuFileExport_Click();

private:
    QString AskFile();
    void Write(const QString& file);
    void TellWritten(const QString& file, int count);

    WindowParts parts_;
};

} // namespace quellbox
