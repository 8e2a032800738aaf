#include "mail/ServerProfile.h"

#include <QCoreApplication>

#include <algorithm>

namespace quellbox {

namespace {

using Form = RatingForm;

WantedFields WantedOf(const ServerProfile& profile) {
    QByteArrayList names{"To", "From", "Subject"};
    for (const RatingField& rating : profile.ratings) {
        names.append(rating.name);
    }
    for (const AddressField& sender : profile.senders) {
        names.append(sender.name);
    }
    return WantedFields(names);
}

std::vector<ServerProfile> MakeProfiles() {
    std::vector<ServerProfile> profiles{
        // The confidence is a percentage, and the envelope stands in fields of the filter's own.
        {.key = QStringLiteral("imf"),
         .name = QT_TRANSLATE_NOOP("quellbox", "Intelligent Message Filter"),
         .ratings = {{"X-SCL", Form::BeforePercent}, {"X-SMSMSE-SCL", Form::PercentAdded}},
         .firstRatingDecides = true,
         .senders = {{"X-Sender", AddressForm::Text}},
         .marks = {"X-SCL", "X-SMSMSE-SCL"}},
        // Microsoft Learn, "Anti-spam stamps" for the rating and the reasons, "Pickup directory and Replay directory"
        // for the envelope, which may have parameters as in "<a@example.org> BODY=8BITMIME".
        {.key = QStringLiteral("exchange"),
         .name = QT_TRANSLATE_NOOP("quellbox", "Exchange Server"),
         .ratings = {{"X-MS-Exchange-Organization-SCL"}},
         .senders = {{"X-Sender"}, {"Return-Path"}},
         .reasons = {"X-MS-Exchange-Organization-Antispam-Report", "X-MS-Exchange-Organization-PCL",
                     "X-MS-Exchange-Organization-SenderIdResult"},
         .marks = {"X-MS-Exchange-Organization-SCL"}},
        // amavisd-new's README and its comments on local quarantines: the envelope, and fields as SpamAssassin's.
        {.key = QStringLiteral("amavis"),
         .name = QT_TRANSLATE_NOOP("quellbox", "amavis"),
         .ratings = {{"X-Spam-Score"}, {"X-Spam-Status", Form::Number, "score="}, {"X-Spam-Level", Form::Count, "*"}},
         .senders = {{"X-Envelope-From"}, {"Return-Path"}},
         .reasons = {"X-Amavis-Alert", "X-Spam-Status", "X-Quarantine-ID"},
         .marks = {"X-Quarantine-ID", "X-Envelope-From", "X-Amavis-Alert"}},
        // Rspamd's documentation of the module "milter headers".
        {.key = QStringLiteral("rspamd"),
         .name = QT_TRANSLATE_NOOP("quellbox", "rspamd"),
         .ratings = {{"X-Spamd-Result", Form::Number, "["},
                     {"X-Rspamd-Score"},
                     {"X-Spam-Status", Form::Number, "score="},
                     {"X-Spam-Level", Form::Count, "*"}},
         .senders = {{"Return-Path"}},
         .reasons = {"X-Rspamd-Action", "X-Spamd-Result", "X-Virus"},
         .marks = {"X-Spamd-Result", "X-Rspamd-Score", "X-Rspamd-Action", "X-Rspamd-Server"}},
        // Mail::SpamAssassin::Conf, "add_header" and "envelope_sender_header".
        {.key = QStringLiteral("spamassassin"),
         .name = QT_TRANSLATE_NOOP("quellbox", "SpamAssassin"),
         .ratings = {{"X-Spam-Status", Form::Number, "score="},
                     {"X-Spam-Status", Form::Number, "hits="},
                     {"X-Spam-Score"},
                     {"X-Spam-Level", Form::Count, "*"}},
         .senders = {{"X-Envelope-From"}, {"Return-Path"}},
         .reasons = {"X-Spam-Status", "X-Spam-Report"},
         .marks = {"X-Spam-Status", "X-Spam-Level", "X-Spam-Checker-Version"}},
    };
    for (ServerProfile& profile : profiles) {
        profile.wanted = WantedOf(profile);
    }
    return profiles;
}

bool IsDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

/// The number with which a text begins, after spaces: a sign, digits and at most one point. Empty where there is none.
QString LeadingNumber(QStringView text) {
    text = text.trimmed();
    qsizetype end = !text.isEmpty() && (text.front() == u'-' || text.front() == u'+') ? 1 : 0;
    bool hasDigit = false;
    bool hasPoint = false;
    for (; end < text.size() && (IsDigit(text[end]) || (text[end] == u'.' && !hasPoint)); ++end) {
        hasDigit = hasDigit || IsDigit(text[end]);
        hasPoint = hasPoint || text[end] == u'.';
    }
    return hasDigit ? text.first(end).toString() : QString();
}

QString NumberBehind(QLatin1String before, const QString& value) {
    const qsizetype at = before.isEmpty() ? 0 : value.indexOf(before, 0, Qt::CaseInsensitive);
    return at < 0 ? QString() : LeadingNumber(QStringView(value).sliced(at + before.size()));
}

QString CountAtBeginning(QLatin1String of, const QString& value) {
    qsizetype count = 0;
    for (QStringView rest(value); !of.isEmpty() && rest.startsWith(of); rest = rest.sliced(of.size())) {
        ++count;
    }
    return QString::number(count);
}

/// The address of a path (RFC 5321, section 4.1.2): without the angle brackets, and without the parameters behind it.
QString PathAddress(const QString& value) {
    const QString text = value.trimmed();
    if (!text.startsWith(u'<')) {
        return text.section(u' ', 0, 0);
    }
    const qsizetype end = text.indexOf(u'>');
    return text.mid(1, end < 0 ? -1 : end - 1);
}

} // namespace

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
    switch (field.form) {
    case RatingForm::BeforePercent:
        return value.contains(u'%') ? value.section(u'%', 0, 0) : QString();
    case RatingForm::PercentAdded:
        return value.section(u'%', 0, 0);
    case RatingForm::Number:
        return NumberBehind(after, value);
    case RatingForm::Count:
        return CountAtBeginning(after, value);
    }
    return {};
}

QString AddressText(const AddressField& field, const QString& value) {
    return field.form == AddressForm::Text ? value : PathAddress(value);
}

} // namespace quellbox
