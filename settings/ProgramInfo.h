#pragma once

#include "platform/FileSystem.h"
#include "platform/FolderPath.h"

#include <QLocale>
#include <QString>

namespace quellbox {

/// What the program knows about itself. Title, names, addresses and version come from the build's configuration.
struct ProgramInfo {
    QString Title; ///< of the application, as in captions and tips
    QString ProductName;
    QString CompanyName;
    QString Comments; ///< one sentence: what it is for
    QString FileDescription;
    QString LegalCopyright;
    int Major = 0;
    int Minor = 0;
    int Revision = 0;
    QString WebSite;        ///< of the maker, with scheme and without a slash at the end
    QString SupportAddress; ///< e-mail
    QString DownloadPage;   ///< whole address
    QString ExecutableName; ///< base name of the executable, without extension; names the settings store too
    QString ExecutablePath; ///< the executable's file
    Folder Directory;       ///< folder of the executable
    QString HelpFile;       ///< the compiled help file's path
    QString HistoryFile;    ///< where what the program does is written down, in the folder for the user's data

    /// "major.minor.revision", in plain decimal.
    QString Version() const { return QStringLiteral("%1.%2.%3").arg(Major).arg(Minor).arg(Revision); }

    /// The page that tells whether a newer version exists.
    QString UpdatePage() const { return WebSite + QStringLiteral("/quellbox/version.asp?client=") + Version(); }

    /// The page that takes suggestions.
    QString FeedbackPage() const { return WebSite + QStringLiteral("/quellbox/feedback.htm"); }

    /// The address that begins a message to the maker's support.
    QString SupportLink() const { return QStringLiteral("mailto:%1?subject=Quellbox").arg(SupportAddress); }
};

/// The facts of this build, for an executable started as `executablePath` (absolute).
ProgramInfo MakeProgramInfo(const QString& executablePath);

/// The day on which the program's executable was last modified, as the locale's short date; empty when the file does
/// not tell.
QString BuildDate(const FileSystem& files, const ProgramInfo& program, const QLocale& locale = QLocale());

} // namespace quellbox
