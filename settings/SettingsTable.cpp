#include "settings/SettingsTable.h"

#include "mail/ServerProfile.h"
#include "platform/RuntimeError.h"
#include "settings/DeliveryKeys.h"
#include "settings/TextConversion.h"

#include <QCoreApplication>

#include <type_traits>

namespace quellbox {
namespace {

QString SettingsSection() {
    return QStringLiteral("Settings");
}

void Assign(Folder& member, const QString& text) {
    member = text;
}

void Assign(qint16& member, const QString& text) {
    member = ToInteger16(text);
}

void Assign(qint32& member, const QString& text) {
    member = ToInteger32(text);
}

void Assign(bool& member, const QString& text) {
    member = ToBoolean(text);
}

void Assign(QString& member, const QString& text) {
    member = text;
}

QString ToText(qint32 value) {
    return QString::number(value);
}

QString ToText(bool value) {
    return FromBoolean(value);
}

QString ToText(const QString& value) {
    return value;
}

bool IsProfile(const QString& key) {
    return ProfileOf(key).key == key || key == QLatin1String(ownServerKey);
}

bool IsPort(const QString& text) {
    bool isNumber = false;
    const int port = text.toInt(&isNumber);
    return isNumber && port >= 1 && port <= 65535;
}

template <class State, class Value>
auto& MemberOf(State& state, Value AppState::*member) {
    return state.*member;
}

template <class State, class Value>
auto& MemberOf(State& state, Value OwnServer::*member) {
    return state.Own.*member;
}

void AssignMember(AppState& state, const SettingRow& row, const QString& text) {
    if (row.isFit != nullptr && !row.isFit(text)) {
        throw RuntimeError(QCoreApplication::translate("quellbox", row.unfit));
    }
    std::visit([&](auto member) { Assign(MemberOf(state, member), text); }, row.member);
}

bool IsFolder(const SettingRow& row) {
    return std::holds_alternative<Folder AppState::*>(row.member);
}

bool IsFilterMessages(const SettingRow& row) {
    return row.member == SettingMember(&AppState::FilterMessages);
}

/// Reads one setting; returns what to tell the user when the stored text is unfit, and is empty otherwise.
QString LoadRow(const SettingsStore& store, const SettingRow& row, const QString& defaultText, AppState& state) {
    const QString text = ReadSetting(store, row.key, defaultText);
    try {
        AssignMember(state, row, text);
        return QString();
    } catch (const RuntimeError& error) {
        AssignMember(state, row, defaultText);
        return QCoreApplication::translate("quellbox", "The setting \"%1\" is stored as \"%2\" and cannot be used; its "
                                                       "default \"%3\" is used instead. %4")
            .arg(QString(row.key), text, defaultText, error.Text());
    }
}

constexpr const char* notOfEnvelope =
    QT_TRANSLATE_NOOP("quellbox", "Those are not names of header fields that tell the envelope of a message.");

} // namespace

const std::vector<SettingRow>& SettingsTable() {
    static const std::vector<SettingRow> table = {
        {QLatin1String("ArchiveDir"), QLatin1String(""), &AppState::ArchiveDir},
        {QLatin1String("PickupDir"), QLatin1String(""), &AppState::PickupDir},
        {QLatin1String("FilterMessages"), QLatin1String("0"), &AppState::FilterMessages},
        {QLatin1String("FilterDays"), QLatin1String("0"), &AppState::FilterDays},
        {QLatin1String("TolerationLevel"), QLatin1String("0"), &AppState::TolerationLevel},
        {QLatin1String("RefreshInterval"), QLatin1String("60"), &AppState::RefreshInterval},
        {QLatin1String("RawBody"), QLatin1String("0"), &AppState::RawBody},
        {QLatin1String("AutoRefresh"), QLatin1String("1"), &AppState::AutoRefresh},
        {QLatin1String("OutlookExpress"), QLatin1String("0"), &AppState::OutlookExpress},
        {QLatin1String("ContentsAttachment"), QLatin1String("0"), &AppState::ContentsAttachment},
        {QLatin1String("ContentsCollapse"), QLatin1String("0"), &AppState::ContentsCollapse},
        {QLatin1String("StatusBar"), QLatin1String("1"), &AppState::StatusBar},
        {QLatin1String("Toolbar"), QLatin1String("1"), &AppState::Toolbar},
        {QLatin1String("HideMinimized"), QLatin1String("0"), &AppState::HideMinimized},
        {QLatin1String("BulkMode"), QLatin1String("0"), &AppState::BulkMode},
        {QLatin1String("Whole"), QLatin1String("2000"), &AppState::Whole},
        {QLatin1String("Bottom"), QLatin1String("2000"), &AppState::Bottom},
        {QLatin1String("Contents"), QLatin1String("1"), &AppState::Contents},
        {QLatin1String("HeaderField"), QLatin1String("0"), &AppState::HeaderField},
        {QLatin1String("KeepDeletedDays"), QLatin1String("0"), &AppState::KeepDeletedDays},
        {QLatin1String("HistoryDays"), QLatin1String("90"), &AppState::HistoryDays},
        {QLatin1String("ReadableText"), QLatin1String("0"), &AppState::ReadableText},
        {QLatin1String("ServerProfile"), QLatin1String("imf"), &AppState::ServerProfile, IsProfile,
         QT_TRANSLATE_NOOP("quellbox", "No server has that name.")},
        {QLatin1String("Delivery"), QLatin1String(DeliveryKeys::pickup), &AppState::Delivery, DeliveryKeys::IsKey,
         QT_TRANSLATE_NOOP("quellbox", "There is no such way of delivery.")},
        {QLatin1String("SmtpHost"), QLatin1String(""), &AppState::SmtpHost},
        {QLatin1String("SmtpPort"), QLatin1String("25"), &AppState::SmtpPort, IsPort,
         QT_TRANSLATE_NOOP("quellbox", "A port is a number from 1 to 65535.")},
        {QLatin1String("SmtpSecurity"), QLatin1String(SecurityKeys::startTls), &AppState::SmtpSecurity,
         SecurityKeys::IsKey, QT_TRANSLATE_NOOP("quellbox", "There is no such way of securing a connection.")},
        {QLatin1String("SmtpUser"), QLatin1String(""), &AppState::SmtpUser},
        {QLatin1String("DeliveryCommand"), QLatin1String("sendmail -i -f SENDER -- RECIPIENT..."),
         &AppState::DeliveryCommand},
        {QLatin1String("OwnRating"), QLatin1String("X-Spam-Score"), &OwnServer::rating, IsRatingField,
         QT_TRANSLATE_NOOP("quellbox", "The name of a header field is ASCII without blanks and colons.")},
        {QLatin1String("OwnRatingForm"), QLatin1String(RatingKeys::number), &OwnServer::ratingForm, RatingKeys::IsKey,
         QT_TRANSLATE_NOOP("quellbox", "A spam confidence has no such form.")},
        {QLatin1String("OwnRatingText"), QLatin1String(""), &OwnServer::ratingText, IsRatingText,
         QT_TRANSLATE_NOOP("quellbox", "Only ASCII can be found before a number.")},
        {QLatin1String("OwnSender"), QLatin1String("Return-Path"), &OwnServer::senders, AreEnvelopeFields,
         notOfEnvelope},
        {QLatin1String("OwnRecipients"), QLatin1String("X-Original-To, Delivered-To, Envelope-To"),
         &OwnServer::recipients, AreEnvelopeFields, notOfEnvelope},
        {QLatin1String("OwnRecipientsRepeat"), QLatin1String("0"), &OwnServer::recipientsRepeat},
        {QLatin1String("OwnReasons"), QLatin1String("X-Spam-Status"), &OwnServer::reasons, AreFieldNames,
         QT_TRANSLATE_NOOP("quellbox", "The name of a header field is ASCII without blanks and colons.")},
        {QLatin1String("OwnPacked"), QLatin1String("0"), &OwnServer::packed},
        {QLatin1String("OwnEnding"), QLatin1String(""), &OwnServer::ending, IsFileEnding,
         QT_TRANSLATE_NOOP("quellbox", "The name of a file has no such characters.")},
        {QLatin1String("OwnMaildir"), QLatin1String("0"), &OwnServer::maildir},
    };
    return table;
}

QString ReadSetting(const SettingsStore& store, const QString& key, const QString& defaultText) {
    return store.Value(SettingsSection(), key).value_or(defaultText);
}

void WriteSetting(SettingsStore& store, const QString& key, const QString& value) {
    store.SetValue(SettingsSection(), key, value);
}

QStringList LoadSettings(const SettingsStore& store, const Folder& programDirectory, AppState& state) {
    QStringList failures;
    const auto load = [&](const SettingRow& row) {
        const QString defaultText = IsFolder(row) ? programDirectory.Text() : QString(row.defaultText);
        const QString failure = LoadRow(store, row, defaultText, state);
        if (!failure.isEmpty()) {
            failures.append(failure);
        }
    };
    state.FilterMessages = 0;
    for (const SettingRow& row : SettingsTable()) {
        if (!IsFilterMessages(row)) {
            load(row);
        }
    }
    // Without a day window there is nothing to filter: the button starts released, whatever is stored.
    for (const SettingRow& row : SettingsTable()) {
        if (IsFilterMessages(row) && state.FilterDays != 0) {
            load(row);
        }
    }
    return failures;
}

void SaveSettings(SettingsStore& store, const AppState& state) {
    for (const SettingRow& row : SettingsTable()) {
        const auto write = [&](auto member) {
            if constexpr (!std::is_same_v<decltype(member), Folder AppState::*>) {
                WriteSetting(store, row.key, ToText(MemberOf(state, member)));
            }
        };
        std::visit(write, row.member);
    }
    store.Flush();
}

} // namespace quellbox
