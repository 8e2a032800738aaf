#pragma once

#include "mail/ServerProfile.h"

#include <QString>

namespace quellbox {

/// The forms in which a server that the user describes writes its rating, as the settings have them.
namespace RatingKeys {
constexpr auto number = "number";   ///< a number at the beginning
constexpr auto behind = "behind";   ///< a number behind OwnServer::ratingText
constexpr auto percent = "percent"; ///< the text before a per cent sign
constexpr auto count = "count";     ///< how often OwnServer::ratingText stands at the beginning
bool IsKey(const QString& text);
} // namespace RatingKeys

/// A server of which no profile is known, as the user describes it and the settings hold it.
struct OwnServer {
    QString rating;                ///< name of the field that holds the rating; there may be none
    QString ratingForm;            ///< see RatingKeys
    QString ratingText;            ///< what the form needs
    QString senders;               ///< names of fields with the envelope sender, separated by commas
    QString recipients;            ///< the same for those to whom the message was addressed
    bool recipientsRepeat = false; ///< such a field stands once for each of them
    QString reasons;               ///< names of the other fields that the server writes, separated by commas
    bool packed = false;           ///< files may be packed with gzip
    QString ending;                ///< names of messages end with it; empty for every file
    bool maildir = false;          ///< messages lie in the folders "new" and "cur" of the archive

    bool operator==(const OwnServer& other) const = default;
};

/// The key of the profile of such a server, as the settings have it.
constexpr auto ownServerKey = "own";

/// Whether a text can stand in OwnServer::rating.
bool IsRatingField(const QString& text);

/// Whether a text can stand in OwnServer::ratingText: visible ASCII, and blanks between it.
bool IsRatingText(const QString& text);

/// Whether a text can stand in OwnServer::reasons.
bool AreFieldNames(const QString& text);

/// Whether a text can stand in OwnServer::senders and OwnServer::recipients: what the sender of a message writes says
/// nothing about its envelope.
bool AreEnvelopeFields(const QString& text);

/// Whether a text can stand in OwnServer::ending.
bool IsFileEnding(const QString& text);

/// The profile of such a server. What cannot stand in a member of it is left out.
ServerProfile MakeOwnProfile(const OwnServer& server);

/// The same as an object that stays until the program ends, since what runs keeps references to the profile with which
/// it began: one for each server that is different. May be called from several threads at once.
const ServerProfile& OwnProfile(const OwnServer& server);

} // namespace quellbox
