#pragma once

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
    QString Directory;      ///< folder of the executable; ends with a separator
    QString HelpFile;       ///< the compiled help file's path

    /// "major.minor.revision", in plain decimal.
    QString Version() const { return QStringLiteral("%1.%2.%3").arg(Major).arg(Minor).arg(Revision); }
};

/// The facts of this build, for an executable started as `executablePath` (absolute).
ProgramInfo MakeProgramInfo(const QString& executablePath);

} // namespace quellbox
