#pragma once

#include "delivery/Transmitter.h"
#include "messages/ActionRecord.h"
#include "platform/FileSystem.h"
#include "platform/FolderPath.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <optional>

namespace quellbox {

/// False when the pickup folder is the program's own folder, as it is before one has been chosen, or lies below it.
/// Letters of another case are other letters.
bool IsPickupSetUp(const Folder& pickupDir, const Folder& programDir);

/// A moment in the locale's general form: short date, blank, long time; exactly at midnight, to the second that the
/// text shows, the date alone. Blanks of other kinds, which some locales write, become plain ones.
QString GeneralDate(const QDateTime& moment, const QLocale& locale);

/// The question before the test message is written. Lines end in CRLF.
QString PickupTestQuestion();

/// The file of the test message. The separator before its name is a second one where `pickupDir` ends with one already,
/// which does no harm; on a share it is a backslash.
QString PickupTestPath(const QString& pickupDir);

/// The test message's bytes: lines with CRLF in the system's ANSI code page. `moment` is written as it stands.
QByteArray PickupTestMessage(const QString& userName, const QString& pickupDir, const QString& moment);

/// The same for a test of another way: `target` is as ReleaseWay::Target() has it. The message has a date (RFC 5322,
/// section 3.6), which a mail server does not add for everyone.
QString TransmissionTestQuestion(const QString& target);
QByteArray TransmissionTestMessage(const QString& userName, const QString& target, const QDateTime& moment);

/// Writes the test message into the pickup folder, where it replaces an earlier one. Throws FileError.
void WritePickupTest(FileSystem& files, const QString& userName, const QString& pickupDir, const QString& moment);

/// The same, and tells `record` what became of it. Returns what the user is to read when that failed.
std::optional<QString> TryPickupTest(FileSystem& files, const QString& userName, const QString& pickupDir,
                                     const QString& moment, ActionRecord& record);

/// Hands a test message over, to the postmaster, and tells `record` what became of it. `path` becomes that of the file
/// that a mail server has yet to take, and stays empty where the server has the message. Returns what the user is to
/// read when that failed. Waits for the answer, as long as `goOn` says.
std::optional<QString> TryTransmissionTest(Transmitter& transmitter, const QByteArray& message, ActionRecord& record,
                                           const Transmitter::GoOn& goOn, QString& path);

} // namespace quellbox
