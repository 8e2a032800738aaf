#include "delivery/SendingFolder.h"

#include "platform/MessagePlaces.h"

#include <QMutexLocker>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTimeZone>

namespace quellbox {

namespace {

constexpr QLatin1String uncertainMark(".uncertain");

// Two messages with the same name are rare, and more of them a sign that something else is the matter.
constexpr int mostNames = 100;

QString StampFormat() {
    return QStringLiteral("yyyyMMdd-HHmmss-zzz");
}

// The folder of the archive stands before the name, as in "20261122-080910-123-0a1b2c=new~1.a".
QString NewSendingName(const Folder& archive, const QString& name, const QDateTime& now) {
    const quint32 random = QRandomGenerator::system()->generate() & 0xFFFFFFU;
    const QString inFolder = NameInFolder(archive, name);
    const QString folder = name.chopped(inFolder.size()).chopped(inFolder.size() == name.size() ? 0 : 1);
    return now.toUTC().toString(StampFormat()) + QStringLiteral("-%1").arg(random, 6, 16, QLatin1Char('0')) +
           (folder.isEmpty() ? folder : QLatin1Char('=') + folder) + QLatin1Char('~') + inFolder;
}

/// What other programs leave alone of a name: in a folder of the archive what follows a colon is theirs (see
/// IsSameMessage()).
QString LastingPart(const QString& name) {
    const bool isInFolder = name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\'));
    const qsizetype colon = isInFolder ? name.lastIndexOf(QLatin1Char(':')) : -1;
    return colon < 0 ? name : name.left(colon);
}

/// The name with `text` before its ending.
QString WithText(const QString& name, const QString& text) {
    const QString lasting = LastingPart(name);
    const qsizetype point = lasting.lastIndexOf(QLatin1Char('.'));
    const qsizetype place = point <= 0 ? lasting.size() : point;
    return name.left(place) + text + name.mid(place);
}

} // namespace

QString SendingFolderName() {
    return QStringLiteral(".quellbox-sending");
}

Folder SendingFolderOf(const Folder& archive) {
    return archive.PathOf(SendingFolderName() + SeparatorOf(archive));
}

std::optional<SendingName> ParseSendingName(const QString& name) {
    static const QRegularExpression pattern(
        QStringLiteral("\\A([0-9]{8}-[0-9]{6}-[0-9]{3})-[0-9a-f]{6}(?:=([^~./\\\\][^~/\\\\]*))?~(.+)\\z"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = pattern.match(name);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    QDateTime since = QDateTime::fromString(match.captured(1), StampFormat());
    since.setTimeZone(QTimeZone::utc());
    if (!since.isValid()) {
        return std::nullopt;
    }
    return SendingName{since, match.captured(2), match.captured(3)};
}

QString SendingName::In(const Folder& archive) const {
    return folder.isEmpty() ? name : folder + SeparatorOf(archive) + name;
}

QString UncertainName(const QString& name) {
    return IsUncertainName(name) ? name : WithText(name, uncertainMark);
}

bool IsUncertainName(const QString& name) {
    const QString lasting = LastingPart(name);
    const qsizetype point = lasting.lastIndexOf(QLatin1Char('.'));
    return point > 0 && (lasting.left(point).contains(uncertainMark) || lasting.mid(point) == uncertainMark);
}

SendingFolder::SendingFolder(FileSystem& files, const Folder& archive)
    : files_(files), archive_(archive), folder_(SendingFolderOf(archive)) {}

void SendingFolder::Make() {
    const QMutexLocker lock(&mutex_);
    if (!isMade_) {
        files_.MakeFolder(folder_);
        isMade_ = true;
    }
}

void SendingFolder::Forget() {
    const QMutexLocker lock(&mutex_);
    isMade_ = false;
}

QString SendingFolder::Take(const QString& name, const QDateTime& now) {
    QString path = folder_.PathOf(NewSendingName(archive_, name, now));
    Make();
    try {
        files_.Move(archive_.PathOf(name), path);
    } catch (const FileError& error) {
        if (error.Problem() != FileProblem::Missing) {
            throw;
        }
        Forget(); // another program, which was done with it, may have removed the folder
        Make();
        files_.Move(archive_.PathOf(name), path);
    }
    return path;
}

QString SendingFolder::Return(const QString& path, const QString& name) {
    for (int number = 1;; ++number) {
        QString fresh = number == 1 ? name : WithText(name, QStringLiteral("-%1").arg(number));
        try {
            files_.Move(path, archive_.PathOf(fresh));
            return fresh;
        } catch (const FileError& error) {
            if (error.Problem() != FileProblem::Exists || number == mostNames) {
                throw;
            }
        }
    }
}

QString SendingFolder::ReturnMarked(const QString& path, const QString& name) {
    return Return(path, UncertainName(name));
}

LeftBehind ReturnLeftBehind(FileSystem& files, const Folder& archive, const QDateTime& before) {
    const Folder folder = SendingFolderOf(archive);
    LeftBehind left;
    if (!files.IsRealFolder(folder)) {
        return left;
    }
    SendingFolder sending(files, archive);
    for (const FolderEntry& entry : files.Entries(folder)) {
        const std::optional<SendingName> message = ParseSendingName(entry.name);
        if (!message || message->since >= before) {
            continue;
        }
        try {
            left.returned.append(sending.ReturnMarked(folder.PathOf(entry.name), message->In(archive)));
        } catch (const FileError& error) {
            left.errors.push_back(error); // another program may have been quicker
        }
    }
    files.RemoveFolder(folder);
    return left;
}

} // namespace quellbox
