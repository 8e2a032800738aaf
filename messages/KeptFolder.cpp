#include "messages/KeptFolder.h"

#include "mail/DisplayText.h"
#include "platform/MessagePlaces.h"
#include "settings/AppState.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTimeZone>

#include <algorithm>

namespace quellbox {

namespace {

QString DateFormat() {
    return QStringLiteral("yyyyMMdd");
}

QString TimeFormat() {
    return QStringLiteral("HHmmss-zzz");
}

QString NewName(int days, const QDateTime& now) {
    const quint32 random = QRandomGenerator::system()->generate() & 0xFFFFFFU;
    return QStringLiteral("%1-%2d-%3")
        .arg(now.toUTC().toString(DateFormat() + QLatin1Char('-') + TimeFormat()))
        .arg(std::clamp(days, 1, KeptFolder::mostDays))
        .arg(random, 6, 16, QLatin1Char('0'));
}

} // namespace

std::optional<KeptFolderName> ParseKeptFolderName(const QString& name) {
    static const QRegularExpression pattern(
        QStringLiteral("\\A([0-9]{8})-([0-9]{6}-[0-9]{3})-([1-9][0-9]{0,3})d-[0-9a-f]{6}\\z"));
    const QRegularExpressionMatch match = pattern.match(name);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QDate date = QDate::fromString(match.captured(1), DateFormat());
    const QTime time = QTime::fromString(match.captured(2), TimeFormat());
    if (!date.isValid() || !time.isValid()) {
        return std::nullopt;
    }
    return KeptFolderName{QDateTime(date, time, QTimeZone::utc()), match.captured(3).toInt()};
}

QString KeptFoldersName() {
    return QStringLiteral(".quellbox-deleted");
}

Folder KeptFoldersOf(const Folder& archive) {
    return archive.PathOf(KeptFoldersName() + SeparatorOf(archive));
}

QString KeptPath(const Folder& kept, const QString& name) {
    return kept.PathOf(NameInFolder(kept, name));
}

KeptFolder::KeptFolder(FileSystem& files, const Folder& archive, int days, const QDateTime& now)
    : files_(files), above_(KeptFoldersOf(archive)), name_(NewName(days, now)),
      folder_(above_.PathOf(name_ + SeparatorOf(archive))) {}

void KeptFolder::Make() {
    const QMutexLocker lock(&mutex_);
    if (state_ == State::New) {
        try {
            files_.MakeFolder(above_);
            files_.MakeFolder(folder_);
            state_ = State::Made;
        } catch (const FileError& error) {
            error_ = error;
            state_ = State::Refused;
        }
    }
    if (error_) {
        throw FileError(*error_);
    }
}

std::optional<FileFailure> KeptFolder::Refusal() const {
    const QMutexLocker lock(&mutex_);
    return error_ ? std::optional(FileFailure(*error_)) : std::nullopt;
}

bool KeptFolder::IsMade() const {
    const QMutexLocker lock(&mutex_);
    return state_ == State::Made;
}

std::shared_ptr<KeptFolder> FolderToKeepIn(FileSystem& files, const AppState& state, const QDateTime& now) {
    if (state.KeepDeletedDays <= 0) {
        return nullptr;
    }
    return std::make_shared<KeptFolder>(files, state.ArchiveDir, state.KeepDeletedDays, now);
}

QString TextOfRefusal(const Folder& archive, const FileFailure& refusal) {
    return QCoreApplication::translate(
               "quellbox", "Nothing was deleted: the folder for deleted messages cannot be made in %1\n\n%2")
        .arg(CleanseForDisplay(archive), CleanseForDisplay(refusal.reason));
}

} // namespace quellbox
