#include "dialogs/Cleansing.h"

#include "archive/DayWindow.h"
#include "platform/FolderPath.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

constexpr qint32 progressStep = 25;

QString ParagraphBreak() {
    return QStringLiteral("\r\n\r\n");
}

bool IsMessage(const QString& name) {
    return name.endsWith(QLatin1String(".EML"), Qt::CaseInsensitive);
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
    const QString daysText = QString::number(days);
    QStringList names;
    try {
        names = files.VisibleFileNames(archiveDir);
    } catch (const FileError& error) {
        result.failures.push_back({error.Path(), error.Reason()});
    }
    // Without the separator, the paths would name files beside the folder.
    const QString folder = WithSeparator(archiveDir);
    for (const QString& name : names) {
        if (!IsMessage(name)) {
            continue;
        }
        const QString path = folder + name;
        bool isAnnounced = false;
        const auto announce = [&] {
            if (!isAnnounced && result.count % progressStep == 0) {
                showProgress(name);
            }
            isAnnounced = true;
        };
        const auto isKept = [&](const FileStatus& status) {
            const bool isRecent = IsRecentFile(daysText, status.modifiedNs, today);
            if (!isRecent) {
                announce();
            }
            return isRecent;
        };
        try {
            if (days == 0) {
                announce();
                files.Remove(path);
            } else if (!files.RemoveUnless(path, isKept)) {
                continue;
            }
        } catch (const FileError& error) {
            announce();
            result.failures.push_back({error.Path(), error.Reason()});
        }
        ++result.count;
    }
    return result;
}

} // namespace quellbox
