#include "settings/SettingsTable.h"

#include "settings/Placement.h"
#include "tests/support/MemorySettingsStore.h"

#include <QDir>
#include <QSet>

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

const QString section = QStringLiteral("Settings");
const QString programFolder = QStringLiteral("/opt/quellbox");

/// Remembers the order in which values are written.
class RecordingStore : public MemorySettingsStore {
public:
    void SetValue(const QString& inSection, const QString& key, const QString& value) override {
        written.append(inSection + QLatin1Char('/') + key);
        MemorySettingsStore::SetValue(inSection, key, value);
    }

    QStringList written;
};

QStringList Load(const SettingsStore& store, AppState& state) {
    return LoadSettings(store, programFolder, state);
}

AppState Loaded(const SettingsStore& store) {
    AppState state;
    EXPECT_TRUE(Load(store, state).isEmpty());
    return state;
}

void Put(SettingsStore& store, const char* key, const char* value) {
    WriteSetting(store, QString::fromUtf8(key), QString::fromUtf8(value));
}

QString Stored(const SettingsStore& store, const char* key) {
    return ReadSetting(store, QString::fromUtf8(key), QStringLiteral("<absent>"));
}

} // namespace

TEST(ReadSetting, GivesTheDefaultOnlyWhenTheKeyIsAbsent) {
    MemorySettingsStore store;
    EXPECT_EQ(ReadSetting(store, QStringLiteral("Key"), QStringLiteral("60")), QStringLiteral("60"));
    Put(store, "Key", "");
    EXPECT_EQ(ReadSetting(store, QStringLiteral("Key"), QStringLiteral("60")), QString());
    Put(store, "Key", "5");
    EXPECT_EQ(ReadSetting(store, QStringLiteral("Key"), QStringLiteral("60")), QStringLiteral("5"));
}

TEST(ReadSetting, TakesAnOmittedDefaultAsTheEmptyText) {
    EXPECT_EQ(ReadSetting(MemorySettingsStore(), QStringLiteral("Key")), QString());
}

TEST(WriteSetting, WritesIntoTheSectionOfSettings) {
    MemorySettingsStore store;
    WriteSetting(store, QStringLiteral("Key"), QStringLiteral("value"));
    EXPECT_EQ(store.Value(section, QStringLiteral("Key")), QStringLiteral("value"));
}

TEST(LoadSettings, GivesTheDefaultsOfAFirstStart) {
    const AppState state = Loaded(MemorySettingsStore());
    EXPECT_EQ(state.ArchiveDir, programFolder + QDir::separator());
    EXPECT_EQ(state.PickupDir, programFolder + QDir::separator());
    EXPECT_EQ(state.HeaderField, 0);
    EXPECT_EQ(state.FilterDays, 0);
    EXPECT_EQ(state.TolerationLevel, 0);
    EXPECT_EQ(state.RefreshInterval, 60);
    EXPECT_EQ(state.RawBody, 0);
    EXPECT_EQ(state.AutoRefresh, 1);
    EXPECT_EQ(state.OutlookExpress, 0);
    EXPECT_EQ(state.KeepDeletedDays, 0) << "what is deleted is gone, unless the user wants it otherwise";
    EXPECT_EQ(state.HistoryDays, 90);
    EXPECT_EQ(state.ServerProfile, QStringLiteral("imf"));
    EXPECT_EQ(state.Own.rating, QStringLiteral("X-Spam-Score"));
    EXPECT_EQ(state.Own.ratingForm, QStringLiteral("number"));
    EXPECT_EQ(state.Own.ratingText, QString());
    EXPECT_EQ(state.Own.senders, QStringLiteral("Return-Path"));
    EXPECT_EQ(state.Own.recipients, QStringLiteral("X-Original-To, Delivered-To, Envelope-To"));
    EXPECT_FALSE(state.Own.recipientsRepeat);
    EXPECT_EQ(state.Own.reasons, QStringLiteral("X-Spam-Status"));
    EXPECT_FALSE(state.Own.packed);
    EXPECT_EQ(state.Own.ending, QString());
    EXPECT_FALSE(state.Own.maildir);
    EXPECT_EQ(state.FilterMessages, 0);
    EXPECT_EQ(state.ContentsAttachment, 0);
    EXPECT_EQ(state.ContentsCollapse, 0);
    EXPECT_TRUE(state.StatusBar);
    EXPECT_TRUE(state.Toolbar);
    EXPECT_TRUE(state.Contents);
    EXPECT_FALSE(state.HideMinimized);
    EXPECT_FALSE(state.BulkMode);
    EXPECT_EQ(state.Whole, 2000);
    EXPECT_EQ(state.Bottom, 2000);
}

TEST(LoadSettings, DoesNotDoubleTheSeparatorOfTheProgramFolder) {
    AppState state;
    const QString folder = programFolder + QDir::separator();
    EXPECT_TRUE(LoadSettings(MemorySettingsStore(), folder, state).isEmpty());
    EXPECT_EQ(state.ArchiveDir, folder);
}

TEST(LoadSettings, GivesAStoredFolderTheSeparatorThatItLacks) {
    MemorySettingsStore store;
    const auto loaded = [&store](const char* folder) {
        Put(store, "ArchiveDir", folder);
        Put(store, "PickupDir", folder);
        const AppState state = Loaded(store);
        EXPECT_EQ(state.ArchiveDir, state.PickupDir);
        return state.PickupDir;
    };
    EXPECT_EQ(loaded("/mail/spam"), QStringLiteral("/mail/spam") + QDir::separator());
    EXPECT_EQ(loaded("/mail/spam/"), QStringLiteral("/mail/spam/"));
    EXPECT_EQ(loaded("/"), QStringLiteral("/"));
    EXPECT_EQ(loaded(R"(\\nas\mail)"), QStringLiteral(R"(\\nas\mail\)"));
    EXPECT_EQ(loaded(R"(\\nas\mail\)"), QStringLiteral(R"(\\nas\mail\)"));
    EXPECT_EQ(loaded(""), QString());
}

TEST(LoadSettings, ReadsEveryStoredValue) {
    MemorySettingsStore store;
    Put(store, "ArchiveDir", "/mail/archive/");
    Put(store, "PickupDir", "/mail/pickup/");
    Put(store, "HeaderField", "3");
    Put(store, "FilterDays", "7");
    Put(store, "TolerationLevel", "2");
    Put(store, "RefreshInterval", "15.5 seconds");
    Put(store, "RawBody", "1");
    Put(store, "AutoRefresh", "0");
    Put(store, "OutlookExpress", "1");
    Put(store, "KeepDeletedDays", "30");
    Put(store, "HistoryDays", "0");
    Put(store, "ServerProfile", "amavis");
    Put(store, "FilterMessages", "1");
    Put(store, "ContentsAttachment", "1");
    Put(store, "ContentsCollapse", "1");
    Put(store, "StatusBar", "False");
    Put(store, "Toolbar", "0");
    Put(store, "Contents", "false");
    Put(store, "HideMinimized", "True");
    Put(store, "BulkMode", "-1");
    Put(store, "Whole", "70000");
    Put(store, "Bottom", "-5");
    const AppState state = Loaded(store);
    EXPECT_EQ(state.ArchiveDir, QStringLiteral("/mail/archive/"));
    EXPECT_EQ(state.PickupDir, QStringLiteral("/mail/pickup/"));
    EXPECT_EQ(state.HeaderField, 3);
    EXPECT_EQ(state.FilterDays, 7);
    EXPECT_EQ(state.TolerationLevel, 2);
    EXPECT_EQ(state.RefreshInterval, 16);
    EXPECT_EQ(state.RawBody, 1);
    EXPECT_EQ(state.AutoRefresh, 0);
    EXPECT_EQ(state.OutlookExpress, 1);
    EXPECT_EQ(state.KeepDeletedDays, 30);
    EXPECT_EQ(state.HistoryDays, 0);
    EXPECT_EQ(state.ServerProfile, QStringLiteral("amavis"));
    EXPECT_EQ(state.FilterMessages, 1);
    EXPECT_EQ(state.ContentsAttachment, 1);
    EXPECT_EQ(state.ContentsCollapse, 1);
    EXPECT_FALSE(state.StatusBar);
    EXPECT_FALSE(state.Toolbar);
    EXPECT_FALSE(state.Contents);
    EXPECT_TRUE(state.HideMinimized);
    EXPECT_TRUE(state.BulkMode);
    EXPECT_EQ(state.Whole, 70000);
    EXPECT_EQ(state.Bottom, -5);
}

TEST(LoadSettings, ReadsATextThatIsNoNumberAsZeroAndNotAsTheDefault) {
    MemorySettingsStore store;
    Put(store, "RefreshInterval", "often");
    Put(store, "Whole", "");
    const AppState state = Loaded(store);
    EXPECT_EQ(state.RefreshInterval, 0);
    EXPECT_EQ(state.Whole, 0);
}

TEST(LoadSettings, ReadsFilterMessagesOnlyWithADayWindow) {
    MemorySettingsStore store;
    Put(store, "FilterMessages", "1");
    Put(store, "FilterDays", "0");
    EXPECT_EQ(Loaded(store).FilterMessages, 0);
    Put(store, "FilterDays", "1");
    EXPECT_EQ(Loaded(store).FilterMessages, 1);
}

TEST(LoadSettings, IgnoresAnUnfitFilterMessagesWithoutADayWindow) {
    MemorySettingsStore store;
    Put(store, "FilterMessages", "9999999999");
    AppState state;
    EXPECT_TRUE(Load(store, state).isEmpty());
    Put(store, "FilterDays", "1");
    EXPECT_EQ(Load(store, state).size(), 1);
}

TEST(LoadSettings, KeepsTheDefaultAndNamesKeyAndTextWhenAValueCannotBeConverted) {
    MemorySettingsStore store;
    Put(store, "StatusBar", "perhaps");
    Put(store, "RefreshInterval", "32768");
    Put(store, "Bottom", "2147483648");
    Put(store, "Toolbar", "False");
    AppState state;
    const QStringList failures = Load(store, state);
    ASSERT_EQ(failures.size(), 3);
    EXPECT_EQ(state.RefreshInterval, 60);
    EXPECT_TRUE(state.StatusBar);
    EXPECT_EQ(state.Bottom, 2000);
    EXPECT_FALSE(state.Toolbar) << "the settings after an unfit one are read";
    const QString all = failures.join(QLatin1Char('\n'));
    for (const char* part : {"RefreshInterval", "32768", "StatusBar", "perhaps", "Bottom", "2147483648"}) {
        EXPECT_TRUE(all.contains(QLatin1Char('"') + QString::fromUtf8(part) + QLatin1Char('"'))) << part;
    }
    EXPECT_EQ(Stored(store, "StatusBar"), QStringLiteral("perhaps")) << "reading changes nothing in the store";
}

TEST(LoadSettings, HoldsTheLargestNumbersOfEachType) {
    MemorySettingsStore store;
    Put(store, "RefreshInterval", "32767");
    Put(store, "Bottom", "2147483647");
    const AppState state = Loaded(store);
    EXPECT_EQ(state.RefreshInterval, 32767);
    EXPECT_EQ(state.Bottom, 2147483647);
}

TEST(SaveSettings, WritesInTheFixedOrderWithoutTheFolders) {
    RecordingStore store;
    SaveSettings(store, AppState());
    QStringList expected;
    const QString keys =
        QStringLiteral("FilterMessages FilterDays TolerationLevel RefreshInterval RawBody AutoRefresh OutlookExpress "
                       "ContentsAttachment ContentsCollapse StatusBar Toolbar HideMinimized BulkMode Whole Bottom "
                       "Contents HeaderField KeepDeletedDays HistoryDays ReadableText ServerProfile Delivery SmtpHost "
                       "SmtpPort SmtpSecurity SmtpUser DeliveryCommand OwnRating OwnRatingForm OwnRatingText OwnSender "
                       "OwnRecipients OwnRecipientsRepeat OwnReasons OwnPacked OwnEnding OwnMaildir");
    for (const QString& key : keys.split(QLatin1Char(' '))) {
        expected.append(section + QLatin1Char('/') + key);
    }
    EXPECT_EQ(store.written, expected);
    EXPECT_EQ(store.FlushCount(), 1);
}

TEST(SaveSettings, WritesNumbersInDecimalAndBooleansAsWords) {
    MemorySettingsStore store;
    AppState state;
    state.RefreshInterval = -32768;
    state.Whole = 2147483647;
    state.StatusBar = true;
    state.Toolbar = false;
    SaveSettings(store, state);
    EXPECT_EQ(Stored(store, "RefreshInterval"), QStringLiteral("-32768"));
    EXPECT_EQ(Stored(store, "Whole"), QStringLiteral("2147483647"));
    EXPECT_EQ(Stored(store, "StatusBar"), QStringLiteral("True"));
    EXPECT_EQ(Stored(store, "Toolbar"), QStringLiteral("False"));
}

TEST(SaveSettings, TellsThatTheStoreCannotBeWritten) {
    MemorySettingsStore store;
    store.SetUnwritable();
    EXPECT_THROW(SaveSettings(store, AppState()), FileError);
}

TEST(SaveSettings, LeavesFoldersAndPlacementAsTheyAre) {
    MemorySettingsStore store;
    Put(store, "ArchiveDir", "/mail/");
    Put(store, "MainLeft", "15");
    AppState state = Loaded(store);
    state.ArchiveDir = QStringLiteral("/elsewhere/");
    SaveSettings(store, state);
    EXPECT_EQ(Stored(store, "ArchiveDir"), QStringLiteral("/mail/"));
    EXPECT_EQ(Stored(store, "PickupDir"), QStringLiteral("<absent>"));
    EXPECT_EQ(Stored(store, "MainLeft"), QStringLiteral("15"));
}

TEST(LoadSettings, DropsWhatCannotDescribeAServer) {
    MemorySettingsStore store;
    Put(store, "ServerProfile", "own");
    Put(store, "OwnRating", "X-A, X-B");
    Put(store, "OwnRatingForm", "guess");
    Put(store, "OwnRatingText", "\u00E4");
    Put(store, "OwnSender", "X-Sender, From");
    Put(store, "OwnRecipients", "X To");
    Put(store, "OwnReasons", "X-Why:");
    Put(store, "OwnEnding", "a/b");
    Put(store, "OwnMaildir", "perhaps");
    AppState state;
    EXPECT_EQ(Load(store, state).size(), 8);
    EXPECT_EQ(state.ServerProfile, QStringLiteral("own"));
    OwnServer usual = state.Own;
    EXPECT_TRUE(Load(MemorySettingsStore(), state).isEmpty());
    EXPECT_TRUE(state.Own == usual);
    EXPECT_EQ(usual.rating, QStringLiteral("X-Spam-Score"));
}

TEST(SaveSettings, KeepsTheServerThatTheUserDescribes) {
    MemorySettingsStore store;
    AppState state = Loaded(store);
    state.ServerProfile = QStringLiteral("own");
    state.Own = {.rating = QStringLiteral("X-Junk"),
                 .ratingForm = QStringLiteral("count"),
                 .ratingText = QStringLiteral("*"),
                 .senders = QStringLiteral("X-A, X-B"),
                 .recipients = QString(),
                 .recipientsRepeat = true,
                 .reasons = QStringLiteral("Subject"),
                 .packed = true,
                 .ending = QStringLiteral(".msg"),
                 .maildir = true};
    SaveSettings(store, state);
    const AppState next = Loaded(store);
    EXPECT_EQ(next.ServerProfile, QStringLiteral("own"));
    EXPECT_TRUE(next.Own == state.Own);
}

TEST(SaveSettings, WritesWhatTheNextStartReads) {
    MemorySettingsStore store;
    AppState state = Loaded(store);
    state.FilterDays = 2;
    state.FilterMessages = 1;
    state.AutoRefresh = 0;
    state.Contents = false;
    state.BulkMode = true;
    state.Bottom = 3210;
    state.HeaderField = 4;
    state.KeepDeletedDays = 999;
    state.HistoryDays = 9999;
    SaveSettings(store, state);
    const AppState next = Loaded(store);
    EXPECT_EQ(next.FilterDays, 2);
    EXPECT_EQ(next.FilterMessages, 1);
    EXPECT_EQ(next.AutoRefresh, 0);
    EXPECT_FALSE(next.Contents);
    EXPECT_TRUE(next.BulkMode);
    EXPECT_EQ(next.Bottom, 3210);
    EXPECT_EQ(next.HeaderField, 4);
    EXPECT_EQ(next.KeepDeletedDays, 999);
    EXPECT_EQ(next.HistoryDays, 9999);
}

TEST(SettingsTable, NamesEachKeyAndEachMemberOnce) {
    QSet<QString> keys;
    const auto& table = SettingsTable();
    for (size_t row = 0; row < table.size(); ++row) {
        keys.insert(table[row].key);
        for (size_t other = 0; other < row; ++other) {
            EXPECT_FALSE(table[row].member == table[other].member) << table[row].key.data();
        }
    }
    EXPECT_EQ(size_t(keys.size()), table.size());
    EXPECT_EQ(table.size(), 39u);
}
