#pragma once

#include "mail/CharsetEvidence.h"
#include "mail/HeaderScanner.h"
#include "mail/PackedFile.h"
#include "platform/MessagePlaces.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <vector>

namespace quellbox {

/// How a rating stands in the value of a header field.
enum class RatingForm {
    BeforePercent, ///< the text before the first per cent sign; empty without one
    PercentAdded,  ///< the same, as if a per cent sign followed
    Number,        ///< the number behind RatingField::after
    Count          ///< a number: how often RatingField::after stands at the beginning
};

/// A header field that may hold the rating.
struct RatingField {
    QByteArray name;
    RatingForm form = RatingForm::Number;
    QByteArray after = {};
};

/// How an address stands in the value of a header field.
enum class AddressForm {
    Text, ///< it is the value, whatever that is
    Path  ///< as in SMTP (RFC 5321, section 4.1.2), with or without angle brackets; parameters may follow
};

/// A header field that may hold an address of the envelope.
struct AddressField {
    QByteArray name;
    AddressForm form = AddressForm::Path;
    bool repeats = false;   ///< the field stands once for each address; else only the topmost one counts
    bool overrides = false; ///< of an address to whom: it counts although another field stands above it
};

/// What a spam filter writes into the messages that it blocks.
struct ServerProfile {
    QString key;                       ///< as the settings have it
    const char* name;                  ///< what the user reads, not yet translated
    std::vector<RatingField> ratings;  ///< the first that is there and holds a rating counts
    bool firstRatingDecides = false;   ///< the first that is there counts, also without a rating
    std::vector<AddressField> senders; ///< the first that is there counts
    bool trustsAnyPlace = false; ///< of a sender; else one below the first Received field is the sender's own text
    std::vector<AddressField> recipients = {}; ///< the topmost counts; commas separate several addresses
    QByteArrayList reasons = {};               ///< fields that say why a message was blocked, as they are to be shown
    QByteArrayList marks = {};                 ///< fields that only this kind of server writes

    QByteArrayList added = {}; ///< what other fields the server has put on top begin with, and must not go out
    Packing packing = Packing::Never;
    MessagePlaces places = {};

    WantedFields wanted = WantedFields(); ///< what a row needs: To, From, Subject, Received, the ratings, the senders

    /// Whether ratings are numbers, and compare as such.
    bool RatesByNumber() const;
};

/// What the list reads of a message, by a profile of which all but that is filled in.
WantedFields WantedOf(const ServerProfile& profile);

/// Every profile that is known, the default one first. That of a server which the user describes is none of them; see
/// OwnProfile().
const std::vector<ServerProfile>& ServerProfiles();

/// The profile that the settings name; the default one where there is none of that name.
const ServerProfile& ProfileOf(const QString& key);

/// The rating in the value of a field, which is decoded for display; empty where it holds none.
QString RatingText(const RatingField& field, const QString& value);

/// The address in the raw value of a field; empty where it holds none.
QString AddressText(const AddressField& field, QByteArrayView raw, const CharsetEvidence& evidence = CharsetEvidence());

/// The addresses of a path in the raw value of a field, as they stand there; see AddressForm::Path. Commas separate
/// several.
QByteArrayList PathAddresses(QByteArrayView raw);

} // namespace quellbox
