#include "delivery/TransmittingWay.h"

#include "delivery/OutgoingMessage.h"
#include "mail/PackedFile.h"
#include "platform/RuntimeError.h"

#include <QCoreApplication>

#include <utility>

namespace quellbox {

TransmittingWay::TransmittingWay(FileSystem& files, const Clock& clock, const Folder& archive,
                                 const ServerProfile& profile, std::unique_ptr<Transmitter> transmitter)
    : files_(files), clock_(clock), archive_(archive), profile_(profile), transmitter_(std::move(transmitter)),
      sending_(files, archive) {}

TransmittingWay::~TransmittingWay() = default;

QString TransmittingWay::Release(const QString& name) {
    const QString original = archive_.PathOf(name);
    if (isStopped_) {
        throw FileError(original, QCoreApplication::translate("quellbox", "It was not sent any more."),
                        FileProblem::NotTaken);
    }
    QString path;
    const DeliveryOutcome outcome = Transmit(name, path);
    switch (outcome.fate) {
    case DeliveryFate::Delivered:
        RemoveDelivered(path, name);
        break;
    case DeliveryFate::Refused:
    case DeliveryFate::Failed:
        if (!path.isEmpty()) {
            sending_.Return(path, name);
        }
        throw FileError(original, outcome.words, FileProblem::NotTaken);
    case DeliveryFate::Uncertain:
        throw FileError(archive_.PathOf(sending_.ReturnMarked(path, name)), outcome.words, FileProblem::Uncertain);
    }
    return outcome.words;
}

/// `path` is where the message is when it was taken out of the archive. Throws FileError, and it is in the archive
/// then.
DeliveryOutcome TransmittingWay::Transmit(const QString& name, QString& path) {
    DeliveryOutcome unsent;
    bool wasLoaded = false;
    const auto load = [&]() -> std::optional<OutgoingMessage> {
        path = sending_.Take(name, clock_.Now());
        std::optional<OutgoingMessage> message = Load(path, name, unsent);
        wasLoaded = message.has_value();
        return message;
    };
    try {
        DeliveryOutcome outcome = transmitter_->Transmit(load, [this] { return !isStopped_; });
        return unsent.words.isEmpty() ? outcome : unsent;
    } catch (const FileError& error) {
        if (!path.isEmpty()) {
            sending_.Return(path, name);
        }
        throw FileError(archive_.PathOf(name), error.Reason(), error.Problem());
    } catch (const std::exception& error) {
        const QString reason = QString::fromUtf8(error.what());
        if (path.isEmpty()) {
            throw FileError(archive_.PathOf(name), reason);
        }
        // As when the memory does not suffice. Of one that was handed over nobody knows.
        const QString now = wasLoaded ? sending_.ReturnMarked(path, name) : sending_.Return(path, name);
        throw FileError(archive_.PathOf(now), reason, wasLoaded ? FileProblem::Uncertain : FileProblem::Other);
    }
}

/// The message; nothing, and why in `outcome`, where it says nothing of its recipients. Throws FileError when it cannot
/// be read.
std::optional<OutgoingMessage> TransmittingWay::Load(const QString& path, const QString& name,
                                                     DeliveryOutcome& outcome) const {
    const QByteArray message = ReadWholeMessage(files_, path, profile_.packing);
    const Envelope envelope = EnvelopeOf(message, profile_);
    if (envelope.recipients.isEmpty()) {
        outcome.words =
            QCoreApplication::translate("quellbox", "The message does not say to whom it was sent: it has none of "
                                                    "the fields in which the chosen server writes that.");
        return std::nullopt;
    }
    return OutgoingMessage{envelope, WithoutServerFields(message, profile_), name};
}

// One that stays is brought back later with the mark of those that may have been delivered.
void TransmittingWay::RemoveDelivered(const QString& path, const QString& name) {
    try {
        files_.RemoveEvenReadOnly(path);
    } catch (const FileError& error) {
        throw FileError(archive_.PathOf(name),
                        QCoreApplication::translate("quellbox", "It was delivered, but its file cannot be removed: %1")
                            .arg(error.Reason()));
    }
}

} // namespace quellbox
