#include "delivery/ReplayTransmitter.h"

#include "delivery/EnvelopeAddress.h"
#include "delivery/OutgoingMessage.h"
#include "delivery/SmtpText.h"
#include "platform/TemporaryName.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace quellbox {

namespace {

// What the server reads, or writes, at the top of such a file besides the envelope ("Pickup directory and Replay
// directory" of Microsoft Learn, and files that it has exported).
const QByteArrayList& FieldsOfReplay() {
    static const QByteArrayList names{"x-sender",     "x-receiver",        "x-createdby",
                                      "x-helodomain", "x-extendedprops",   "x-extendedmessageprops",
                                      "x-source",     "x-sourceipaddress", "x-endofinjectedxheaders"};
    return names;
}

constexpr char senderField[] = "X-Sender";
constexpr char recipientField[] = "X-Receiver";

// More messages of the same name are a sign that the server takes none.
constexpr int mostReplayNames = 100;

QByteArray EnvelopeLine(const char* field, const QByteArray& address) {
    return field + QByteArrayLiteral(": <") + address + ">\r\n";
}

/// Whether the server would take what the sender has written for a part of the envelope.
bool GoesOnWithEnvelope(const QByteArray& message) {
    return message.startsWith(' ') || message.startsWith('\t') || HasFieldOnTop(message, FieldsOfReplay());
}

/// Why a message cannot go into a replay directory, for the user; empty when it can.
QString ProblemForReplay(const OutgoingMessage& message) {
    if (GoesOnWithEnvelope(message.bytes)) {
        return QCoreApplication::translate("quellbox", "The message begins with a field that the mail server would "
                                                       "take for its envelope.");
    }
    return ProblemOfEnvelope(message.envelope);
}

/// Whether the file system has said why it has not done something, and not merely that something went wrong.
bool IsAnswered(FileProblem problem) {
    return problem == FileProblem::Missing || problem == FileProblem::Exists || problem == FileProblem::NoRight ||
           problem == FileProblem::NoRoom;
}

} // namespace

QString ReplayName(const QString& name, int number) {
    static const QRegularExpression notAllowed(QStringLiteral(R"([<>:"/\\|?*\x00-\x1f])"));
    static const QRegularExpression device(QStringLiteral(R"(\A(con|prn|aux|nul|com\d|lpt\d) *(\.|\z))"),
                                           QRegularExpression::CaseInsensitiveOption);
    const qsizetype point = name.lastIndexOf(QLatin1Char('.'));
    QString base = point < 0 ? name : name.left(point);
    base.replace(notAllowed, QStringLiteral("_"));
    if (base.isEmpty() || device.match(base).hasMatch()) {
        base.prepend(QLatin1Char('_'));
    }
    const QString suffix = number == 1 ? QString() : QStringLiteral("-%1").arg(number);
    return base + suffix + QStringLiteral(".eml");
}

QByteArray ReplayText(const OutgoingMessage& message) {
    QByteArray text = EnvelopeLine(senderField, message.envelope.sender);
    for (const QByteArray& recipient : message.envelope.recipients) {
        text += EnvelopeLine(recipientField, recipient);
    }
    return text + WithCrLf(message.bytes);
}

ReplayTransmitter::ReplayTransmitter(FileSystem& files, const Folder& folder) : files_(files), folder_(folder) {}

DeliveryOutcome ReplayTransmitter::Transmit(const Load& load, const GoOn& goOn) {
    if (folder_.IsEmpty()) {
        return {DeliveryFate::Failed, QCoreApplication::translate("quellbox", "No replay directory is chosen.")};
    }
    if (!goOn()) {
        return {DeliveryFate::Failed, QCoreApplication::translate("quellbox", "It was not sent any more.")};
    }
    const std::optional<OutgoingMessage> message = load();
    if (!message) {
        return {};
    }
    const QString problem = ProblemForReplay(*message);
    return problem.isEmpty() ? Put(*message) : DeliveryOutcome{DeliveryFate::Failed, problem};
}

DeliveryOutcome ReplayTransmitter::Put(const OutgoingMessage& message) {
    const QByteArray bytes = ReplayText(message);
    const QString unfinished = folder_.PathOf(TemporaryName());
    try {
        files_.WriteWhole(unfinished, bytes);
    } catch (const FileError& error) {
        RemoveUnfinished(unfinished); // it may be there all the same
        return {DeliveryFate::Failed, folder_.Text() + QStringLiteral(": ") + error.Reason()};
    }
    return Place(unfinished, message.name, bytes);
}

/// Gives the whole file its name, which nobody else has.
DeliveryOutcome ReplayTransmitter::Place(const QString& unfinished, const QString& name, const QByteArray& bytes) {
    for (int number = 1;; ++number) {
        const QString fresh = ReplayName(name, number);
        const QString path = folder_.PathOf(fresh);
        try {
            files_.Move(unfinished, path);
        } catch (const FileError& error) {
            if (!Holds(path, bytes)) {
                if (error.Problem() == FileProblem::Exists && number < mostReplayNames) {
                    continue;
                }
                return OutcomeOfFault(unfinished, error);
            }
            RemoveUnfinished(unfinished);
        }
        return {DeliveryFate::Delivered,
                QCoreApplication::translate("quellbox", "Written into the replay directory as %1.").arg(fresh), path};
    }
}

/// A file that still has its first name was not delivered, if the file system knows what it has done.
DeliveryOutcome ReplayTransmitter::OutcomeOfFault(const QString& unfinished, const FileError& error) {
    const bool isThere = RemoveUnfinished(unfinished) || files_.FileExists(unfinished);
    if (isThere && IsAnswered(error.Problem())) {
        return {DeliveryFate::Failed, folder_.Text() + QStringLiteral(": ") + error.Reason()};
    }
    return {
        DeliveryFate::Uncertain,
        QCoreApplication::translate("quellbox", "Nobody knows whether the mail server has it: %1").arg(error.Reason())};
}

/// Whether the file of that name is the one that was to be put there: only the answer was lost, or it is there already.
bool ReplayTransmitter::Holds(const QString& path, const QByteArray& bytes) const {
    try {
        return ReadWhole(files_, path) == bytes;
    } catch (const FileError&) {
        return false;
    }
}

/// Whether it was there, and is not any more. The server does not look at one that stays.
bool ReplayTransmitter::RemoveUnfinished(const QString& path) {
    try {
        return files_.RemoveEvenReadOnly(path);
    } catch (const FileError&) {
        return false;
    }
}

QString ReplayTransmitter::Target() const {
    return QStringLiteral("replay:") + folder_.Text();
}

} // namespace quellbox
