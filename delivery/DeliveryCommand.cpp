#include "delivery/DeliveryCommand.h"

#include "delivery/EnvelopeAddress.h"
#include "mail/DisplayText.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace quellbox {

namespace {

constexpr int waitSliceMs = 100;
constexpr int longestDeathMs = 5000;
constexpr qsizetype mostOutput = 16 * 1024;

QString SenderWord() {
    return QStringLiteral("SENDER");
}

QString RecipientWord() {
    return QStringLiteral("RECIPIENT");
}

QString RecipientsWord() {
    return QStringLiteral("RECIPIENT...");
}

/// The words of a line, as a POSIX shell splits it; nothing where a quote does not end.
std::optional<QStringList> SplitWords(const QString& line) {
    QStringList words;
    QString word;
    QChar quote;
    bool isWord = false;
    for (qsizetype at = 0; at < line.size(); ++at) {
        const QChar unit = line[at];
        const bool isInDouble = quote == QLatin1Char('"');
        const QChar next = at + 1 < line.size() ? line[at + 1] : QChar();
        const bool escapes = unit == QLatin1Char('\\') && !next.isNull() &&
                             (quote.isNull() || (isInDouble && QStringLiteral("\"\\$`").contains(next)));
        if (escapes) {
            word += next;
            isWord = true;
            ++at;
        } else if (unit == quote) {
            quote = QChar();
        } else if (quote.isNull() && (unit == QLatin1Char('"') || unit == QLatin1Char('\''))) {
            quote = unit;
            isWord = true;
        } else if (quote.isNull() && unit.isSpace()) {
            if (std::exchange(isWord, false)) {
                words += std::exchange(word, {});
            }
        } else {
            word += unit;
            isWord = true;
        }
    }
    if (isWord) {
        words += word;
    }
    return quote.isNull() ? std::optional(words) : std::nullopt;
}

/// Windows has its shell run such a program, and that finds commands in addresses.
bool IsBatchFile(const QString& program) {
    return program.endsWith(QLatin1String(".bat"), Qt::CaseInsensitive) ||
           program.endsWith(QLatin1String(".cmd"), Qt::CaseInsensitive);
}

QString TextOfBatchFile() {
    return QCoreApplication::translate("quellbox", "A batch file cannot be the command, as the shell would run it.");
}

QString ProblemOfCommand(const std::optional<QStringList>& words) {
    if (!words) {
        return QCoreApplication::translate("quellbox", "The command has a quotation mark without its end.");
    }
    if (words->isEmpty() || words->first().isEmpty()) {
        return QCoreApplication::translate("quellbox", "The command names no program.");
    }
    if (IsBatchFile(words->first())) {
        return TextOfBatchFile();
    }
    const bool namesRecipient = std::any_of(words->begin() + 1, words->end(),
                                            [](const QString& word) { return word.contains(RecipientWord()); });
    if (!namesRecipient) {
        return QCoreApplication::translate("quellbox",
                                           "The command does not say where the recipients go: %1 is missing.")
            .arg(RecipientsWord());
    }
    const bool isInWord = std::any_of(words->begin() + 1, words->end(), [](const QString& word) {
        return word != RecipientsWord() && word.contains(RecipientsWord());
    });
    return isInWord
               ? QCoreApplication::translate("quellbox", "%1 has to be an argument of its own.").arg(RecipientsWord())
               : QString();
}

/// What takes the place of an argument that names the sender or the only recipient. Nothing in the addresses is
/// replaced.
QString FilledArgument(const QString& argument, const Envelope& envelope) {
    const QString sender = QString::fromUtf8(envelope.sender);
    if (argument == SenderWord()) {
        return sender.isEmpty() ? QStringLiteral("<>") : sender;
    }
    QString filled;
    for (qsizetype at = 0; at < argument.size();) {
        const QStringView rest = QStringView(argument).sliced(at);
        if (rest.startsWith(SenderWord())) {
            filled += sender;
            at += SenderWord().size();
        } else if (rest.startsWith(RecipientWord())) {
            filled += QString::fromUtf8(envelope.recipients.first());
            at += RecipientWord().size();
        } else {
            filled += argument[at++];
        }
    }
    return filled;
}

/// The arguments with the addresses in them; nothing, and the problem, where an address would become an option or the
/// command takes fewer recipients than there are.
std::optional<QStringList> FilledArguments(const DeliveryCommand& command, const Envelope& envelope, QString& problem) {
    QStringList filled;
    bool optionsEnded = false;
    for (const QString& argument : command.arguments) {
        QStringList words;
        if (argument == RecipientsWord()) {
            for (const QByteArray& address : envelope.recipients) {
                words += QString::fromUtf8(address);
            }
        } else {
            words += FilledArgument(argument, envelope);
        }
        if (argument != RecipientsWord() && argument.contains(RecipientWord()) && envelope.recipients.size() > 1) {
            problem = QCoreApplication::translate("quellbox", "The command takes one recipient only, unless it has %1.")
                          .arg(RecipientsWord());
            return std::nullopt;
        }
        const bool becomesOption = !optionsEnded && !argument.startsWith(QLatin1Char('-')) &&
                                   std::any_of(words.cbegin(), words.cend(),
                                               [](const QString& word) { return word.startsWith(QLatin1Char('-')); });
        if (becomesOption) {
            problem = QCoreApplication::translate("quellbox", "The program would take an address for an option, as it "
                                                              "begins with a hyphen and does not stand behind --.");
            return std::nullopt;
        }
        optionsEnded = optionsEnded || argument == QLatin1String("--");
        filled += words;
    }
    return filled;
}

/// Programs read several addresses out of one that has these characters outside quotes.
bool IsListOfAddresses(const QByteArray& address) {
    return !address.startsWith('"') &&
           std::any_of(address.begin(), address.end(), [](char byte) { return byte == ',' || byte == ';'; });
}

QString ProgramFile(const QString& program) {
    if (program.contains(QLatin1Char('/')) || program.contains(QLatin1Char('\\'))) {
        return program;
    }
    const QString found = QStandardPaths::findExecutable(program);
    return found.isEmpty()
               ? QStandardPaths::findExecutable(program, {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/lib")})
               : found;
}

void KeepOutput(QProcess& process, QByteArray& output) {
    output += process.readAll().left(mostOutput - output.size());
}

QString WithOutput(const QString& words, const QByteArray& output) {
    const QString text = ShownText(CleanseForDisplay(QString::fromLocal8Bit(output)));
    return text.isEmpty() || words.isEmpty() ? words + text : words + QLatin1Char(' ') + text;
}

QString TextOfInterruption(const QString& program) {
    return QCoreApplication::translate("quellbox",
                                       "%1 was interrupted in the middle: the message may have been delivered.")
        .arg(program);
}

DeliveryOutcome OutcomeOfEnd(const QProcess& process, const QString& program, const QByteArray& output) {
    if (process.exitStatus() == QProcess::CrashExit) {
        return {DeliveryFate::Uncertain, WithOutput(TextOfInterruption(program), output)};
    }
    if (process.exitCode() == 0) {
        return {DeliveryFate::Delivered, WithOutput({}, output)};
    }
    return {DeliveryFate::Refused,
            WithOutput(QCoreApplication::translate("quellbox", "%1 has refused the message (code %2).")
                           .arg(program)
                           .arg(process.exitCode()),
                       output)};
}

/// Hands the message to a program that runs, and waits for its end.
DeliveryOutcome Converse(QProcess& process, const QString& program, const QByteArray& message,
                         const QDeadlineTimer& deadline, const std::function<bool()>& goOn) {
    process.write(message);
    process.closeWriteChannel();
    QByteArray output;
    while (process.state() != QProcess::NotRunning && !process.waitForFinished(waitSliceMs)) {
        KeepOutput(process, output);
        if (deadline.hasExpired() || (goOn && !goOn())) {
            process.kill();
            process.waitForFinished(longestDeathMs);
            KeepOutput(process, output);
            return {DeliveryFate::Uncertain, WithOutput(TextOfInterruption(program), output)};
        }
    }
    KeepOutput(process, output);
    return OutcomeOfEnd(process, program, output);
}

} // namespace

QString DefaultDeliveryCommand() {
    return QStringLiteral("sendmail -i -f SENDER -- RECIPIENT...");
}

std::optional<DeliveryCommand> ParseDeliveryCommand(const QString& line, QString* problem) {
    const auto words = SplitWords(line);
    const QString found = ProblemOfCommand(words);
    if (problem != nullptr) {
        *problem = found;
    }
    return found.isEmpty() ? std::optional(DeliveryCommand{words->first(), words->mid(1)}) : std::nullopt;
}

DeliveryOutcome RunDeliveryCommand(const DeliveryCommand& command, const Envelope& envelope, const QByteArray& message,
                                   std::chrono::milliseconds limit, const std::function<bool()>& goOn) {
    const auto failed = [](const QString& words) { return DeliveryOutcome{DeliveryFate::Failed, words}; };
    QString problem = ProblemOfEnvelope(envelope);
    if (problem.isEmpty() && (IsListOfAddresses(envelope.sender) ||
                              std::any_of(envelope.recipients.begin(), envelope.recipients.end(), IsListOfAddresses))) {
        problem = QCoreApplication::translate("quellbox", "The program would take an address for several ones.");
    }
    if (!problem.isEmpty()) {
        return failed(problem);
    }
    const auto arguments = FilledArguments(command, envelope, problem);
    if (!arguments) {
        return failed(problem);
    }
    if (goOn && !goOn()) {
        return failed(
            QCoreApplication::translate("quellbox", "The message was not sent, as the program was told to stop."));
    }
    const QString file = ProgramFile(command.program);
    if (file.isEmpty()) {
        return failed(QCoreApplication::translate("quellbox", "There is no program named %1.").arg(command.program));
    }
    const QDeadlineTimer deadline(limit);
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(file, *arguments);
    if (!process.waitForStarted(static_cast<int>(std::min<qint64>(limit.count(), 86'400'000)))) {
        process.kill();
        return failed(
            QCoreApplication::translate("quellbox", "%1 cannot be started: %2").arg(file, process.errorString()));
    }
    return Converse(process, command.program, message, deadline, goOn);
}

} // namespace quellbox
