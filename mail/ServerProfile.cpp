#include "mail/ServerProfile.h"

#include "mail/AsciiDigit.h"
#include "mail/Charset.h"
#include "mail/DisplayText.h"
#include "mail/HeaderDecoder.h"

#include <QCoreApplication>

#include <algorithm>

namespace quellbox {

namespace {

using Form = RatingForm;

/// The beginnings are those of its default names, which have no ending of their own.
std::vector<NamePattern> AmavisNames() {
    std::vector<NamePattern> names{{{}, QStringLiteral(".eml")}, {{}, QStringLiteral(".eml.gz")}};
    for (const char* beginning : {"spam-", "virus-", "banned-", "badh-"}) {
        names.push_back({QLatin1String(beginning), {}});
    }
    return names;
}

std::vector<ServerProfile> MakeProfiles() {
    std::vector<ServerProfile> profiles{
        // The confidence is a percentage, and the envelope stands in fields of the filter's own.
        {.key = QStringLiteral("imf"),
         .name = QT_TRANSLATE_NOOP("quellbox", "Intelligent Message Filter"),
         .ratings = {{"X-SCL", Form::BeforePercent}, {"X-SMSMSE-SCL", Form::PercentAdded}},
         .firstRatingDecides = true,
         .senders = {{"X-Sender", AddressForm::Text}},
         .trustsAnyPlace = true,
         .recipients = {{.name = "X-Receiver", .repeats = true}},
         .marks = {"X-SCL", "X-SMSMSE-SCL"}},
        // Microsoft Learn, "Anti-spam stamps" for the rating and the reasons, "Pickup directory and Replay directory"
        // for the envelope, which may have parameters as in "<a@example.org> BODY=8BITMIME".
        {.key = QStringLiteral("exchange"),
         .name = QT_TRANSLATE_NOOP("quellbox", "Exchange Server"),
         .ratings = {{"X-MS-Exchange-Organization-SCL"}},
         .senders = {{"X-Sender"}, {"Return-Path"}},
         .recipients = {{.name = "X-Receiver", .repeats = true}, {"Delivered-To"}},
         .reasons = {"X-MS-Exchange-Organization-Antispam-Report", "X-MS-Exchange-Organization-PCL",
                     "X-MS-Exchange-Organization-SenderIdResult"},
         .marks = {"X-MS-Exchange-Organization-SCL"}},
        // amavisd-new's README and its comments on local quarantines: the envelope, and fields as SpamAssassin's. Whom
        // a message was passed to all the same is not among those to whom it was blocked.
        {.key = QStringLiteral("amavis"),
         .name = QT_TRANSLATE_NOOP("quellbox", "amavis"),
         .ratings = {{"X-Spam-Score"}, {"X-Spam-Status", Form::Number, "score="}, {"X-Spam-Level", Form::Count, "*"}},
         .senders = {{"X-Envelope-From"}, {"Return-Path"}},
         .recipients = {{.name = "X-Envelope-To-Blocked", .overrides = true}, {"X-Envelope-To"}},
         .reasons = {"X-Amavis-Alert", "X-Spam-Status"},
         .marks = {"X-Quarantine-ID", "X-Amavis-Alert"},
         .added = {"X-Envelope-", "X-Quarantine-", "X-Amavis-", "X-Spam-"},
         .packing = Packing::Possible,
         .places = {.names = AmavisNames()}},
        // Rspamd's documentation of the module "milter headers".
        {.key = QStringLiteral("rspamd"),
         .name = QT_TRANSLATE_NOOP("quellbox", "rspamd"),
         .ratings = {{"X-Spamd-Result", Form::Number, "["},
                     {"X-Rspamd-Score"},
                     {"X-Spam-Status", Form::Number, "score="},
                     {"X-Spam-Level", Form::Count, "*"}},
         .senders = {{"Return-Path"}},
         .recipients = {{"X-Original-To"}, {"Delivered-To"}, {"Envelope-To"}},
         .reasons = {"X-Rspamd-Action", "X-Spamd-Result", "X-Spam-Status", "X-Virus"},
         .marks = {"X-Spamd-Result", "X-Rspamd-Score", "X-Rspamd-Action", "X-Rspamd-Server"},
         .added = {"X-Spam", "X-Rspamd-"}},
        // Mail::SpamAssassin::Conf, "add_header" and "envelope_sender_header".
        {.key = QStringLiteral("spamassassin"),
         .name = QT_TRANSLATE_NOOP("quellbox", "SpamAssassin"),
         .ratings = {{"X-Spam-Status", Form::Number, "score="},
                     {"X-Spam-Status", Form::Number, "hits="},
                     {"X-Spam-Score"},
                     {"X-Spam-Level", Form::Count, "*"}},
         .senders = {{"Return-Path"}, {"X-Envelope-From"}},
         .recipients = {{"X-Original-To"}, {"Delivered-To"}, {"Envelope-To"}, {"X-Envelope-To"}},
         .reasons = {"X-Spam-Status", "X-Spam-Report"},
         .marks = {"X-Spam-Status", "X-Spam-Score", "X-Spam-Level", "X-Spam-Report", "X-Spam-Checker-Version"},
         .added = {"X-Spam-", "X-Envelope-"}},
        // qmail's maildir(5) and dot-qmail(5) for the folders and the envelope; the rating is that of whichever
        // filter delivers into one.
        {.key = QStringLiteral("maildir"),
         .name = QT_TRANSLATE_NOOP("quellbox", "Maildir"),
         .ratings = {{"X-Spam-Status", Form::Number, "score="},
                     {"X-Spamd-Result", Form::Number, "["},
                     {"X-Spam-Score"},
                     {"X-Rspamd-Score"},
                     {"X-Spam-Level", Form::Count, "*"}},
         .senders = {{"Return-Path"}},
         .recipients = {{"X-Original-To"}, {"Delivered-To"}, {"Envelope-To"}},
         .reasons = {"X-Spam-Status", "X-Spamd-Result", "X-Spam-Report"},
         .added = {"X-Spam", "X-Rspamd-"},
         .places = {.folders = {QStringLiteral("new"), QStringLiteral("cur")}, .names = {{}}}},
    };
    for (ServerProfile& profile : profiles) {
        profile.wanted = WantedOf(profile);
    }
    return profiles;
}

/// The number with which a text begins, after spaces: a sign, digits and at most one point between them. Empty where
/// there is none, or one that no filter writes.
QString LeadingNumber(QStringView text) {
    constexpr qsizetype longest = 20;
    text = text.trimmed();
    if (text.startsWith(u'+')) {
        text = text.sliced(1);
    }
    qsizetype end = text.startsWith(u'-') ? 1 : 0;
    const qsizetype begin = end;
    bool hasPoint = false;
    for (; end < text.size() && (IsAsciiDigit(text[end]) || (text[end] == u'.' && end > begin && !hasPoint)); ++end) {
        hasPoint = hasPoint || text[end] == u'.';
    }
    if (hasPoint && text[end - 1] == u'.') {
        --end;
    }
    return end > begin && end <= longest ? text.first(end).toString() : QString();
}

QString NumberBehind(QLatin1String before, const QString& value) {
    const qsizetype at = before.isEmpty() ? 0 : value.indexOf(before, 0, Qt::CaseInsensitive);
    return at < 0 ? QString() : LeadingNumber(QStringView(value).sliced(at + before.size()));
}

/// Nothing but the characters counts: what begins with others is no rating.
QString CountAtBeginning(QLatin1String of, const QString& value) {
    qsizetype count = 0;
    QStringView rest = QStringView(value).trimmed();
    const bool isEmpty = rest.isEmpty();
    for (; !of.isEmpty() && rest.startsWith(of); rest = rest.sliced(of.size())) {
        ++count;
    }
    return count > 0 || isEmpty ? QString::number(count) : QString();
}

/// The index of the first of the characters in `text` that is not within quotes nor behind a backslash, or the end.
qsizetype FindUnquoted(QByteArrayView text, QByteArrayView characters) {
    bool isQuoted = false;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == '\\') {
            ++at;
        } else if (text[at] == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && characters.contains(text[at])) {
            return at;
        }
    }
    return text.size();
}

QByteArray Unfolded(QByteArrayView raw) {
    return QByteArray(raw.data(), raw.size()).replace("\r\n", "").replace('\n', ' ').trimmed();
}

/// The address of a path: without the angle brackets, the route in front of it, and the parameters behind it. Encoded
/// words have no meaning in an envelope, and are not decoded.
QByteArray PathAddress(QByteArray text) {
    if (!text.startsWith('<')) {
        return text.first(FindUnquoted(text, " \t"));
    }
    text.remove(0, 1);
    text.truncate(FindUnquoted(text, ">"));
    text = text.trimmed();
    if (text.startsWith('@')) {
        text.remove(0, FindUnquoted(text, ":") + 1);
    }
    return text.trimmed();
}

/// Whether a path has nothing that PathAddress() alone understands: quotes, backslashes, folds, a route, or bytes that
/// are not printable.
bool IsSimplePath(QByteArrayView path) {
    return !path.startsWith("<@") && !path.startsWith("< ") &&
           std::all_of(path.begin(), path.end(), [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
}

/// The same as PathAddress(), for a simple path, and without a copy.
QByteArrayView SimplePathAddress(QByteArrayView path) {
    const bool hasBrackets = path.startsWith('<');
    path = path.sliced(hasBrackets ? 1 : 0);
    const qsizetype end = path.indexOf(hasBrackets ? '>' : ' ');
    return (end < 0 ? path : path.first(end)).trimmed();
}

} // namespace

WantedFields WantedOf(const ServerProfile& profile) {
    QByteArrayList names{"To", "From", "Subject", "Received"};
    for (const RatingField& rating : profile.ratings) {
        names.append(rating.name);
    }
    for (const AddressField& sender : profile.senders) {
        names.append(sender.name);
    }
    return WantedFields(names);
}

bool ServerProfile::RatesByNumber() const {
    return std::all_of(ratings.begin(), ratings.end(), [](const RatingField& rating) {
        return rating.form == RatingForm::Number || rating.form == RatingForm::Count;
    });
}

const std::vector<ServerProfile>& ServerProfiles() {
    static const std::vector<ServerProfile> profiles = MakeProfiles();
    return profiles;
}

const ServerProfile& ProfileOf(const QString& key) {
    const std::vector<ServerProfile>& all = ServerProfiles();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&key](const ServerProfile& profile) { return profile.key == key.toLower(); });
    return found == all.end() ? all.front() : *found;
}

QString RatingText(const RatingField& field, const QString& value) {
    const QLatin1String after(field.after);
    const qsizetype percent = value.indexOf(u'%');
    switch (field.form) {
    case RatingForm::BeforePercent:
        return percent < 0 ? QString() : value.left(percent);
    case RatingForm::PercentAdded:
        return value.left(percent); // all of it where there is no sign
    case RatingForm::Number:
        return NumberBehind(after, value);
    case RatingForm::Count:
        return CountAtBeginning(after, value);
    }
    return {};
}

QString AddressText(const AddressField& field, QByteArrayView raw, const CharsetEvidence& evidence) {
    if (field.form == AddressForm::Text) {
        return DecodeHeaderValue(raw, evidence);
    }
    raw = raw.trimmed();
    if (IsSimplePath(raw)) { // which nearly every one is
        return QString::fromLatin1(SimplePathAddress(raw));
    }
    // An address of the envelope is UTF-8 where it is not ASCII (RFC 6531), whatever the message is in.
    const QByteArray address = PathAddress(Unfolded(raw));
    return CleanseForDisplay(DecodeUndeclared(address));
}

// A route has commas as well, but no server writes one (RFC 5321, appendix F.2).
QByteArrayList PathAddresses(QByteArrayView raw) {
    QByteArrayList addresses;
    QByteArray left = Unfolded(raw);
    while (!left.isEmpty()) {
        const qsizetype comma = FindUnquoted(left, ",");
        const QByteArray address = PathAddress(left.first(comma).trimmed());
        if (!address.isEmpty()) {
            addresses.append(address);
        }
        left.remove(0, comma + 1);
    }
    return addresses;
}

} // namespace quellbox
