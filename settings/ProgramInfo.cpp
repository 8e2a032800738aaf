#include "settings/ProgramInfo.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace quellbox {

ProgramInfo MakeProgramInfo(const QString& executablePath) {
    const QFileInfo executable(executablePath);
    ProgramInfo program;
    program.Title = QStringLiteral("Quellbox");
    program.ProductName = program.Title;
    program.CompanyName = QStringLiteral(QUELLBOX_COMPANY);
    program.Comments = QCoreApplication::translate(
        "quellbox", "Looks through the archive of a mail server's spam filter, and delivers what is no spam.");
    program.FileDescription = QCoreApplication::translate("quellbox", "Spam archive manager");
    // Whoever shows a copyright names the libraries under the LGPL beside it (LGPL 3, section 4; LGPL 2.1, section 6).
    program.LegalCopyright =
        QStringLiteral(QUELLBOX_COPYRIGHT "\n") +
        QCoreApplication::translate("quellbox", "With Qt, GLib and GMime, which are under the GNU LGPL.");
    program.Major = QUELLBOX_VERSION_MAJOR;
    program.Minor = QUELLBOX_VERSION_MINOR;
    program.Revision = QUELLBOX_VERSION_PATCH;
    program.WebSite = QStringLiteral(QUELLBOX_WEB_SITE);
    program.SupportAddress = QStringLiteral(QUELLBOX_SUPPORT_ADDRESS);
    program.DownloadPage = QStringLiteral(QUELLBOX_DOWNLOAD_PAGE);
    program.ExecutableName = executable.completeBaseName();
    program.ExecutablePath = QDir::toNativeSeparators(executable.absoluteFilePath());
    program.Directory = QDir::toNativeSeparators(executable.absolutePath());
    program.HistoryFile =
        QDir::toNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                                 QLatin1Char('/') + program.ExecutableName + QStringLiteral("/history.sqlite"));
    program.HelpFile = program.Directory.PathOf(QStringLiteral("Quellbox.chm"));
    return program;
}

QString BuildDate(const FileSystem& files, const ProgramInfo& program, const QLocale& locale) {
    const std::optional<FileStatus> status = files.Status(program.ExecutablePath);
    if (!status) {
        return {};
    }
    const QDateTime modified = QDateTime::fromMSecsSinceEpoch(status->modifiedNs / 1'000'000);
    return locale.toString(modified.date(), QLocale::ShortFormat);
}

} // namespace quellbox
