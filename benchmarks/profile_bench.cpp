// Listing the same messages with each server profile against listing them with the default one: the messages of all
// servers mixed, and those of each server alone.
#include "archive/MessageReading.h"
#include "archive/RefreshTask.h"
#include "benchmarks/Bench.h"
#include "mail/ServerProfile.h"
#include "platform/LocalFileSystem.h"
#include "platform/WorkPool.h"
#include "tests/support/FileNames.h"
#include "tests/support/MemorySettingsStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>
#include <map>
#include <string>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int messages = 3000; // in each archive
constexpr int rounds = 41;

/// What stands on top of a message that a server has blocked, in the order in which servers write it.
struct TopOfServer {
    const char* profile;
    const char* fields;
};

constexpr TopOfServer tops[] = {
    {"imf", "X-Sender: bounce-%1@shop.example\r\n"
            "X-Receiver: clara@mail.example\r\n"
            "X-SCL: 7 98.32%\r\n"},
    {"exchange",
     "X-Sender: <bounce-%1@shop.example> BODY=8BITMIME\r\n"
     "X-Receiver: <clara@mail.example> NOTIFY=NEVER\r\n"
     "X-MS-Exchange-Organization-SCL: 8\r\n"
     "X-MS-Exchange-Organization-PCL: 2\r\n"
     "X-MS-Exchange-Organization-Antispam-Report: DV:3.3.5705.600;SID:SenderIDStatus Fail;OrigIP:192.0.2.7\r\n"
     "X-MS-Exchange-Organization-SenderIdResult: FAIL\r\n"},
    {"amavis", "Return-Path: <bounce-%1@shop.example>\n"
               "Delivered-To: spam-quarantine\n"
               "X-Envelope-From: <bounce-%1@shop.example>\n"
               "X-Envelope-To: <clara@mail.example>, <dora@mail.example>\n"
               "X-Envelope-To-Blocked: <clara@mail.example>, <dora@mail.example>\n"
               "X-Quarantine-ID: <3cWmfppcy-tN>\n"
               "X-Spam-Flag: YES\n"
               "X-Spam-Score: 13.801\n"
               "X-Spam-Level: *************\n"
               "X-Spam-Status: Yes, score=13.801 tag=2 tag2=6.2 kill=6.9\n"
               " tests=[HTML_MESSAGE=0.001, BAYES_99=12.5, RCVD_ILLEGAL_IP=1.3]\n"
               " autolearn=disabled\n"},
    {"rspamd", "Return-Path: <bounce-%1@shop.example>\n"
               "X-Original-To: clara@mail.example\n"
               "Delivered-To: clara@mail.example\n"
               "X-Spamd-Result: default: False [13.80 / 15.00];\n"
               "\tBAYES_SPAM(5.10)[99.99%];\n"
               "\tFORGED_SENDER(0.30)[offers@shop.example,bounce-%1@shop.example];\n"
               "\tMIME_GOOD(-0.10)[multipart/alternative,text/plain];\n"
               "\tRCVD_COUNT_TWO(0.00)[2];\n"
               "\tARC_NA(0.00)[];\n"
               "\tTO_DN_NONE(0.00)[]\n"
               "X-Rspamd-Server: mail\n"
               "X-Rspamd-Action: add header\n"
               "X-Rspamd-Queue-Id: 2F314AA5FF7\n"
               "X-Spam: Yes\n"},
    {"spamassassin", "Return-Path: <bounce-%1@shop.example>\n"
                     "X-Original-To: clara@mail.example\n"
                     "Delivered-To: clara@mail.example\n"
                     "X-Spam-Checker-Version: SpamAssassin 4.0.0 (2022-12-14) on mail.example\n"
                     "X-Spam-Flag: YES\n"
                     "X-Spam-Level: *************\n"
                     "X-Spam-Status: Yes, score=13.8 required=5.0 tests=BAYES_99,HTML_MESSAGE,\n"
                     "\tRCVD_ILLEGAL_IP,URIBL_BLOCKED autolearn=no autolearn_force=no version=4.0.0\n"
                     "X-Spam-Report: \n"
                     "\t*  12 BAYES_99 BODY: Bayes spam probability is 99 to 100%\n"
                     "\t*      [score: 1.0000]\n"
                     "\t* 0.0 HTML_MESSAGE BODY: HTML included in message\n"
                     "\t* 1.3 RCVD_ILLEGAL_IP Received: contains illegal IP address\n"},
};

/// What the sender and the servers on the way have written.
constexpr const char* below = "Received: from mail.shop.example (mail.shop.example [192.0.2.9])\n"
                              "\tby mx.mail.example (Postfix) with ESMTPS id 2F314AA5FF7\n"
                              "\tfor <clara@mail.example>; Sun, 22 Nov 2026 20:00:35 +0000 (UTC)\n"
                              "DKIM-Signature: v=1; a=rsa-sha256; c=relaxed/simple; d=shop.example;\n"
                              " s=mail; t=1795377581; h=from : to : subject : date : message-id;\n"
                              " bh=/PhylNjzAmkWyP4iFsd/QiFJdS2oouJTw4n8SPJd/3Q=;\n"
                              " b=ji9xMMI4KaFWdIysGmS+C4HL6J8wozysfVxiOn+fshgOsWSH46RfipXhl03wO5ezavc8H\n"
                              " nN58dkxj/ZKmMooDAd7IFhDq87ZNc1yi8Xnpss6CyDH1vtt8MRarh2DbD5OMS0lazRGwwP8=\n"
                              "Received: from pc.shop.example (pc.shop.example [192.0.2.7])\n"
                              "\tby mail.shop.example with ESMTP id 1006;\n"
                              "\tMon, 02 Mar 2026 09:15:00 +0000\n"
                              "From: =?utf-8?q?J=C3=BCrgen_M=C3=BCller?= <offers@shop.example>\n"
                              "To: clara@mail.example,\n"
                              " dora@mail.example\n"
                              "Subject: =?utf-8?q?Alles_mu=C3=9F?= =?iso-8859-1?b?8w==?= raus (%1)\n"
                              "Date: Mon, 02 Mar 2026 09:15:00 +0000\n"
                              "Message-ID: <%1@shop.example>\n"
                              "MIME-Version: 1.0\n"
                              "Content-Type: text/plain; charset=utf-8\n"
                              "\n";

QByteArray MessageOf(const TopOfServer& top, int number) {
    QByteArray bytes = QByteArray(top.fields) + below + QByteArray("A line of the text of the message.\n").repeated(60);
    const bool hasCrLf = QByteArray(top.fields).contains('\r');
    if (hasCrLf) {
        bytes.replace("\r\n", "\n").replace('\n', "\r\n");
    }
    return bytes.replace("%1", QByteArray::number(number));
}

/// Writes an archive of messages of the servers whose turn comes; `only` is one of them, or all where it is null.
QString WriteArchive(const QString& place, const char* name, const TopOfServer* only) {
    const QString folder = place + QLatin1Char('/') + QLatin1String(name) + QLatin1Char('/');
    Require(QDir().mkpath(folder), "there is no room for an archive");
    for (int number = 0; number < messages; ++number) {
        QFile file(folder + QStringLiteral("%1.eml").arg(number, 6, 10, QLatin1Char('0')));
        const TopOfServer& top = only != nullptr ? *only : tops[static_cast<size_t>(number) % std::size(tops)];
        const QByteArray bytes = MessageOf(top, number);
        Require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "a message cannot be written");
    }
    return folder;
}

/// Lists archives without a window.
class Lister {
public:
    explicit Lister(FileSystem& files) : files_(files) {}

    /// A full refresh, from the first call of the file system to the sorted list.
    double TimeRefresh(const QString& folder, const QString& profile) {
        AppState state;
        state.ArchiveDir = folder;
        state.ServerProfile = profile;
        MessageListModel model;
        RefreshTask task({files_, store_, *clock_, pool_}, state, model);
        QEventLoop loop;
        QObject::connect(&task, &RefreshTask::Ended, &loop, &QEventLoop::quit);
        const double seconds = Time([&] {
            task.Start(false, false);
            loop.exec();
        });
        Require(model.Count() == messages, "the list has not one row for each message");
        return seconds;
    }

private:
    FileSystem& files_;
    MemorySettingsStore store_;
    std::unique_ptr<Clock> clock_ = MakeClock();
    ThreadWorkPool pool_;
};

/// Reads every message on one thread, which is all that a profile has a part in. Returns how many rows have a rating
/// and a sender.
int ReadRows(const FileSystem& files, const QString& folder, const std::vector<FileEntry>& entries,
             const ServerProfile& profile) {
    const std::unique_ptr<FolderReader> reader = files.ReadFolder(folder);
    int rated = 0;
    for (const FileEntry& entry : entries) {
        const ReadRow read = ReadMessageRow(*reader, entry, false, profile);
        Require(read.loaded && !read.isPacked, "a message was not read");
        rated += !read.row.Cell(ColumnScl).isEmpty() && !read.row.Tag().isEmpty() ? 1 : 0;
    }
    return rated;
}

/// How long the processor was at work for this program, in seconds: other programs on the computer do not count.
template <class Work>
double ProcessorTime(Work work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

std::vector<FileEntry> EntriesOf(const FileSystem& files, const QString& folder) {
    std::vector<FileEntry> entries;
    for (const QString& name : FileNames(files, folder)) {
        const std::optional<FileStatus> status = files.Status(folder + name);
        Require(status.has_value(), "a message has gone");
        entries.push_back({name, *status});
    }
    return entries;
}

/// The best times of each profile, measured in turns.
struct Measured {
    std::map<QString, Best> refresh;
    std::map<QString, Best> reading;
};

Measured Measure(FileSystem& files, const QString& folder, const std::vector<const ServerProfile*>& profiles) {
    Lister lister(files);
    const std::vector<FileEntry> entries = EntriesOf(files, folder);
    Measured measured;
    for (int round = 0; round < rounds; ++round) {
        for (size_t turn = 0; turn < profiles.size(); ++turn) {
            // Whoever comes first in a round has the caches of another one; that is not always the same.
            const ServerProfile& profile = *profiles[(turn + static_cast<size_t>(round)) % profiles.size()];
            measured.refresh[profile.key].Add(lister.TimeRefresh(folder, profile.key));
            measured.reading[profile.key].Add(ProcessorTime([&] { ReadRows(files, folder, entries, profile); }));
        }
    }
    return measured;
}

void ReportRatios(const char* archive, const Measured& measured, const QString& standard) {
    for (const auto& [key, best] : measured.refresh) {
        if (key == standard) {
            Report(qPrintable(QStringLiteral("%1: %2 (default), refresh").arg(QLatin1String(archive), key)),
                   best.seconds * 1e3, "ms");
            continue;
        }
        const QString name = QStringLiteral("%1: %2 / default").arg(QLatin1String(archive), key);
        Report(qPrintable(name + QStringLiteral(", refresh")), best.seconds / measured.refresh.at(standard).seconds,
               "times", "<= 1.1");
        Report(qPrintable(name + QStringLiteral(", reading, processor")),
               measured.reading.at(key).seconds / measured.reading.at(standard).seconds, "times", "<= 1.1");
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir place;
    const std::unique_ptr<FileSystem> files = MakeLocalFileSystem();
    const ServerProfile& standard = ServerProfiles().front();
    std::vector<const ServerProfile*> all;
    for (const ServerProfile& profile : ServerProfiles()) {
        all.push_back(&profile);
    }
    const QString mixed = WriteArchive(place.path(), "mixed", nullptr);
    ReportRatios("all servers", Measure(*files, mixed, all), standard.key);
    for (const TopOfServer& top : tops) {
        const ServerProfile& own = ProfileOf(QLatin1String(top.profile));
        Require(own.key == QLatin1String(top.profile), "there is no such profile");
        const QString folder = WriteArchive(place.path(), top.profile, &top);
        Require(ReadRows(*files, folder, EntriesOf(*files, folder), own) == messages,
                "a profile does not find what its server has written");
        if (&own != &standard) {
            ReportRatios((std::string("those of ") + top.profile).c_str(), Measure(*files, folder, {&standard, &own}),
                         standard.key);
        }
    }
    return 0;
}
