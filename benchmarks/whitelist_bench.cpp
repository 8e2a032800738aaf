// What the whitelist adds to reading the header fields of many messages: from files, as a pass reads them, and from
// memory, where no disk flatters the ratio. The senders are the same in both cases.
#include "archive/MessageReading.h"
#include "benchmarks/Bench.h"
#include "mail/HeaderFields.h"
#include "platform/LocalFileSystem.h"
#include "tests/support/ListedFolder.h"
#include "whitelist/WhitelistMatcher.h"

#include <QRandomGenerator>

#include <algorithm>
#include <vector>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int entryCount = 5000;
constexpr int messageCount = 32000;
constexpr int rounds = 7;

/// Names from a space that entries and senders share, so that many senders are nearly on the list and some are.
QString Domain(QRandomGenerator& random) {
    return QStringLiteral("@mail%1.example.com").arg(random.bounded(40000));
}

QString Address(QRandomGenerator& random) {
    return QStringLiteral("sender%1").arg(random.bounded(500)) + Domain(random);
}

/// Half of them whole domains, half single addresses.
QStringList MakeEntries(QRandomGenerator& random) {
    QStringList entries;
    for (int number = 0; number < entryCount; ++number) {
        entries.append(number % 2 == 0 ? Domain(random) : Address(random));
    }
    return entries;
}

std::vector<QByteArray> MakeHeaderBlocks(QRandomGenerator& random) {
    std::vector<QByteArray> blocks;
    for (int number = 0; number < messageCount; ++number) {
        const QByteArray address = Address(random).toUtf8();
        blocks.push_back("X-SENDER: " + address +
                         "\r\nReceived: from mail.example (192.0.2.1)\r\n"
                         "\tby relay.example with SMTP; 30 Sep 2004 12:00:00 +0200\r\n"
                         "To: reader@example.org\r\nFrom: \"Sender\" <" +
                         address + ">\r\nSubject: =?utf-8?Q?Gr=C3=BC=C3=9Fe?= number " + QByteArray::number(number) +
                         "\r\nX-SCL: 7 99.00%\r\n\r\n");
    }
    return blocks;
}

QStringList ReadSenders(const std::vector<QByteArray>& blocks) {
    QStringList senders;
    for (const QByteArray& block : blocks) {
        senders.append(ParseHeaderFields(block).xSender);
    }
    return senders;
}

/// Reads the headers of an archive as a refresh does. Returns the time from the first file to the last row, in seconds;
/// the folder has been listed before.
double ReadArchive(const FileSystem& files, const QString& folder, WorkPool& pool) {
    const Listing listing = ListedFolder(files, folder, pool);
    const std::vector<FileEntry>& entries = listing.files;
    Require(entries.size() == messageCount, "the archive has another number of messages than there are senders");
    int loaded = 0;
    const double seconds = Time([&] {
        QEventLoop loop;
        OrderedWork<ReadRow> reading(
            pool, entries.size(),
            [&](size_t file) {
                return ReadMessageRow(*listing.reader, entries[file], false, ServerProfiles().front());
            },
            [&loaded](size_t, const ReadRow& read) { loaded += read.loaded ? 1 : 0; },
            [&loop](SeriesEnd) { loop.quit(); });
        reading.Start();
        loop.exec();
    });
    Require(loaded > messageCount / 2, "most messages were not read");
    return seconds;
}

std::vector<bool> Ask(const WhitelistMatcher& matcher, const QStringList& senders) {
    std::vector<bool> answers;
    answers.reserve(static_cast<size_t>(senders.size()));
    for (const QString& sender : senders) {
        answers.push_back(matcher.TolerableSender(sender.toLower()));
    }
    return answers;
}

/// Compares a sample with the rule as it is said: any entry occurs anywhere in the sender.
void RequireRight(const QStringList& entries, const QStringList& senders, const std::vector<bool>& answers) {
    constexpr int looksAt = 31; // every so many senders
    Require(answers.size() == messageCount, "not every sender has an answer");
    int tolerated = 0;
    int checked = 0;
    for (int number = 0; number < messageCount; number += looksAt) {
        const QString sender = senders[number].toLower();
        Require(!sender.isEmpty(), "a sender was not read");
        const bool isTolerated = std::any_of(entries.begin(), entries.end(),
                                             [&sender](const QString& entry) { return sender.contains(entry); });
        Require(answers[static_cast<size_t>(number)] == isTolerated, "a sender has the wrong answer");
        tolerated += isTolerated ? 1 : 0;
        ++checked;
    }
    Require(tolerated > 0 && tolerated < checked, "the sample has only one kind of sender");
}

} // namespace

int main(int argc, char** argv) {
    const QString folder = FolderArgument(argc, argv, 1);
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    const QCoreApplication application(argc, argv);
    ThreadWorkPool pool;
    QRandomGenerator random(1);
    const QStringList entries = MakeEntries(random);
    const std::vector<QByteArray> blocks = MakeHeaderBlocks(random);
    Best pass;
    Best read;
    Best build;
    Best ask;
    for (int round = 0; round < rounds; ++round) {
        pass.Add(ReadArchive(*files, folder, pool)); // the first round fills the cache of files
        QStringList senders;
        read.Add(Time([&] { senders = ReadSenders(blocks); }));
        build.Add(Time([&] { const WhitelistMatcher matcher(entries); }));
        const WhitelistMatcher matcher(entries);
        std::vector<bool> answers;
        ask.Add(Time([&] { answers = Ask(matcher, senders); }));
        RequireRight(entries, senders, answers);
    }
    const double whole = build.seconds + ask.seconds;
    Report("32,000 messages of an archive, cached: read headers", pass.seconds * 1e3, "ms");
    Report("32,000 header blocks in memory: read", read.seconds * 1e3, "ms");
    Report("whitelist of 5,000 entries: build", build.seconds * 1e3, "ms");
    Report("whitelist of 5,000 entries: ask for 32,000 senders", ask.seconds * 1e3, "ms");
    Report("whitelist: ask / read from the archive", 100 * ask.seconds / pass.seconds, "%", "< 10");
    Report("whitelist: build and ask / read from the archive", 100 * whole / pass.seconds, "%", "< 10");
    Report("whitelist: ask / read from memory", 100 * ask.seconds / read.seconds, "%");
    return 0;
}
