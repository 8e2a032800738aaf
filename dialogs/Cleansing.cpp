#include "dialogs/Cleansing.h"

#include "archive/DayWindow.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>
#include <QDir>

namespace quellbox {

namespace {

constexpr qint32 progressStep = 25;

QString ParagraphBreak() {
    return QStringLiteral("\r\n\r\n");
}

bool IsMessage(const QString& name) {
    return name.endsWith(QLatin1String(".EML"), Qt::CaseInsensitive);
}

/// Whether the day window keeps a file; empty when its time cannot be read.
std::optional<bool> IsKept(const FileSystem& files, const QString& path, qint16 days, QDate today) {
    if (days == 0) {
        return false;
    }
    const std::optional<FileStatus> status = files.Status(path);
    return status ? std::optional(IsRecentFile(QString::number(days), status->modifiedNs, today)) : std::nullopt;
}

} // namespace

QString CleansingIntroduction(const QString& archiveDir) {
    return QCoreApplication::translate("quellbox", "%1 contains all archived messages put here by the Exchange "
                                                   "Intelligent Message Filter.")
               .arg(archiveDir) +
           ParagraphBreak() +
           QCoreApplication::translate("quellbox", "This cleansing operation helps you to quickly, and permanently, "
                                                   "remove them.");
}

QString CleansingOptionTag(qint16 days) {
    switch (days) {
    case 1:
        return QCoreApplication::translate("quellbox", ", except those that arrived today.");
    case 2:
        return QCoreApplication::translate("quellbox", ", except those that arrived today and yesterday.");
    case 7:
        return QCoreApplication::translate("quellbox", ", except those that arrived during the last seven days.");
    default:
        return {};
    }
}

QString CleansingQuestion(const QString& archiveDir, qint16 days) {
    return QCoreApplication::translate("quellbox", "Clean up %1").arg(archiveDir) + ParagraphBreak() +
           QCoreApplication::translate("quellbox", "Press OK to remove them all permanently from your system") +
           CleansingOptionTag(days);
}

CleansingResult RemoveArchivedMessages(FileSystem& files, const Clock& clock, const QString& archiveDir, qint16 days,
                                       const std::function<void(const QString& name)>& showProgress) {
    CleansingResult result;
    if (days < 0) {
        return result;
    }
    // A run that goes on past midnight keeps what it was to keep when it began.
    const QDate today = clock.Now().date();
    QStringList names;
    try {
        names = files.VisibleFileNames(archiveDir);
    } catch (const FileError& error) {
        result.failures.push_back({error.Path(), error.Reason()});
    }
    // Without the separator, the paths would name files beside the folder.
    const QString folder = archiveDir.endsWith(QDir::separator()) || archiveDir.endsWith(QLatin1Char('/'))
                               ? archiveDir
                               : archiveDir + QDir::separator();
    for (const QString& name : names) {
        const QString path = folder + name;
        const std::optional<bool> isKept = IsMessage(name) ? IsKept(files, path, days, today) : true;
        if (isKept == true) {
            continue;
        }
        if (result.count % progressStep == 0) {
            showProgress(name);
        }
        ++result.count;
        try {
            if (!isKept) {
                // It may be recent, so it stays.
                throw FileError(path, QCoreApplication::translate("quellbox", "The time of the file cannot be read."));
            }
            files.Remove(path);
        } catch (const FileError& error) {
            result.failures.push_back({error.Path(), error.Reason()});
        }
    }
    return result;
}

} // namespace quellbox
