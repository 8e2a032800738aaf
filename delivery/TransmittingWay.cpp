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
    if (isStopped_) {
        throw FileError(archive_.PathOf(name), QCoreApplication::translate("quellbox", "It was not sent any more."),
                        FileProblem::NotTaken);
    }
    const QString path = sending_.Take(name, clock_.Now());
    DeliveryOutcome outcome;
    try {
        outcome = Transmit(path);
    } catch (const FileError& error) {
        sending_.Return(path, name);
        throw FileError(archive_.PathOf(name), error.Reason(), error.Problem());
    }
    switch (outcome.fate) {
    case DeliveryFate::Delivered:
        RemoveDelivered(path, name);
        break;
    case DeliveryFate::Refused:
    case DeliveryFate::Failed:
        sending_.Return(path, name);
        throw FileError(archive_.PathOf(name), outcome.words, FileProblem::NotTaken);
    case DeliveryFate::Uncertain:
        throw FileError(archive_.PathOf(sending_.ReturnMarked(path, name)), outcome.words, FileProblem::Uncertain);
    }
    return outcome.words;
}

/// Throws FileError when the message cannot be read.
DeliveryOutcome TransmittingWay::Transmit(const QString& path) const {
    const QByteArray message = ReadWholeMessage(files_, path, profile_.packing);
    const Envelope envelope = EnvelopeOf(message, profile_);
    if (envelope.recipients.isEmpty()) {
        return {DeliveryFate::Failed,
                QCoreApplication::translate("quellbox", "The message does not say to whom it was sent: it has none of "
                                                        "the fields in which the chosen server writes that.")};
    }
    return transmitter_->Transmit(envelope, WithoutServerFields(message, profile_), [this] { return !isStopped_; });
}

// One that stays is brought back later with the mark of those that may have been delivered.
void TransmittingWay::RemoveDelivered(const QString& path, const QString& name) {
    try {
        files_.RemoveEvenReadOnly(path);
    } catch (const FileError& error) {
        throw FileError(archive_.PathOf(name),
                        QCoreApplication::translate("quellbox", "It was delivered, but its file cannot be removed: %1")
                            .arg(error.Reason()),
                        FileProblem::Uncertain);
    }
}

} // namespace quellbox
