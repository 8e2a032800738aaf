#include "mail/OwnServer.h"

#include "mail/FieldNames.h"

#include <QCoreApplication>

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>

namespace quellbox {

namespace {

RatingField RatingFieldOf(const OwnServer& server) {
    const QByteArray name = server.rating.toLatin1();
    const QByteArray text = IsRatingText(server.ratingText) ? server.ratingText.toLatin1() : QByteArray();
    if (server.ratingForm == QLatin1String(RatingKeys::behind)) {
        return {name, RatingForm::Number, text};
    }
    if (server.ratingForm == QLatin1String(RatingKeys::percent)) {
        return {name, RatingForm::BeforePercent};
    }
    if (server.ratingForm == QLatin1String(RatingKeys::count)) {
        return {name, RatingForm::Count, text};
    }
    return {name, RatingForm::Number};
}

QByteArrayList FieldNamesIn(const QString& text) {
    QByteArrayList names;
    for (const QString& name : SplitFieldNames(text)) {
        if (IsFieldName(name)) {
            names.append(name.toLatin1());
        }
    }
    return names;
}

std::vector<AddressField> EnvelopeFields(const QString& text, bool repeats) {
    std::vector<AddressField> fields;
    for (const QByteArray& name : FieldNamesIn(text)) {
        if (!IsFieldOfMessage(name)) {
            fields.push_back({.name = name, .repeats = repeats});
        }
    }
    return fields;
}

MessagePlaces PlacesOf(const OwnServer& server) {
    MessagePlaces places;
    if (server.maildir) {
        places.folders = QStringList{QStringLiteral("new"), QStringLiteral("cur")};
        places.names = {{}};
    }
    if (!server.ending.isEmpty() && IsFileEnding(server.ending)) {
        places.names = {{{}, server.ending}};
        places.listsOthers = false;
    }
    return places;
}

} // namespace

bool RatingKeys::IsKey(const QString& text) {
    return text == QLatin1String(number) || text == QLatin1String(behind) || text == QLatin1String(percent) ||
           text == QLatin1String(count);
}

bool IsRatingField(const QString& text) {
    return text.isEmpty() || IsFieldName(text);
}

bool IsRatingText(const QString& text) {
    return std::all_of(text.begin(), text.end(),
                       [](QChar character) { return character >= u' ' && character <= u'~'; });
}

bool AreFieldNames(const QString& text) {
    const QStringList names = SplitFieldNames(text);
    return std::all_of(names.begin(), names.end(), IsFieldName);
}

bool AreEnvelopeFields(const QString& text) {
    const QStringList names = SplitFieldNames(text);
    return AreFieldNames(text) && std::none_of(names.begin(), names.end(),
                                               [](const QString& name) { return IsFieldOfMessage(name.toLatin1()); });
}

bool IsFileEnding(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        return character.isPrint() && character != QLatin1Char('/') && character != QLatin1Char('\\');
    });
}

ServerProfile MakeOwnProfile(const OwnServer& server) {
    ServerProfile profile{.key = QLatin1String(ownServerKey),
                          .name = QT_TRANSLATE_NOOP("quellbox", "another server"),
                          .ratings = {},
                          .senders = EnvelopeFields(server.senders, false),
                          .recipients = EnvelopeFields(server.recipients, server.recipientsRepeat),
                          .reasons = FieldNamesIn(server.reasons),
                          .packing = server.packed ? Packing::Possible : Packing::Never,
                          .places = PlacesOf(server)};
    if (IsFieldName(server.rating)) {
        profile.ratings.push_back(RatingFieldOf(server));
    }
    profile.wanted = WantedOf(profile);
    return profile;
}

const ServerProfile& OwnProfile(const OwnServer& server) {
    static std::mutex mutex;
    static std::deque<std::pair<const OwnServer, const ServerProfile>> made; // which never moves what is in it
    const std::lock_guard lock(mutex);
    const auto found =
        std::find_if(made.begin(), made.end(), [&server](const auto& each) { return each.first == server; });
    return found == made.end() ? made.emplace_back(server, MakeOwnProfile(server)).second : found->second;
}

} // namespace quellbox
