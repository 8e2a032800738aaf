#include "delivery/TransmittingWay.h"

#include "platform/RuntimeError.h"
#include "tests/support/FakeTransmitter.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemoryFileSystem.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

const QByteArray own = "Received: from x\r\nSubject: s\r\n\r\nbody\r\n";
const QByteArray blocked = "X-Envelope-From: <a@example.org>\r\nX-Envelope-To: <b@example.net>\r\n" + own;

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

/// An archive with one message.
struct World {
    explicit World(const QByteArray& message = blocked) {
        files.AddFolder(archive);
        files.Add(archive.PathOf(Text("a.EML")), message);
    }

    std::unique_ptr<TransmittingWay> NewWay() {
        return std::make_unique<TransmittingWay>(files, clock, archive, ProfileOf(Text("amavis")),
                                                 std::make_unique<FakeTransmitter>(transmissions));
    }

    /// Releases the message; returns the problem, where there is one.
    std::optional<FileProblem> Release() {
        try {
            answer = NewWay()->Release(Text("a.EML"));
            return std::nullopt;
        } catch (const FileError& error) {
            answer = error.Reason();
            path = error.Path();
            return error.Problem();
        }
    }

    QStringList Names() const {
        QStringList names;
        for (const QString& file : files.Paths()) {
            names.append(file.mid(archive.Text().size()));
        }
        return names;
    }

    void Answer(DeliveryFate fate, const char* words) {
        transmissions.answer = [fate, words](const Envelope&, const QByteArray&) {
            return DeliveryOutcome{fate, Text(words)};
        };
    }

    const Folder archive = Text("/archive/");
    MemoryFileSystem files;
    FixedClock clock{QDateTime(QDate(2026, 6, 15), QTime(12, 0))};
    FakeTransmissions transmissions;
    QString answer;
    QString path;
};

} // namespace

TEST(TransmittingWay, ADeliveredMessageIsGoneAndTheAnswerIsKept) {
    World world;
    EXPECT_EQ(world.Release(), std::nullopt);
    EXPECT_EQ(world.answer, Text("250 2.0.0 Ok: queued as 4711"));
    EXPECT_TRUE(world.Names().isEmpty());
    ASSERT_EQ(world.transmissions.sent.size(), 1U);
    EXPECT_EQ(world.transmissions.sent[0].first.sender, "a@example.org");
    EXPECT_EQ(world.transmissions.sent[0].first.recipients, QByteArrayList{"b@example.net"});
    EXPECT_EQ(world.transmissions.sent[0].second, own);
}

TEST(TransmittingWay, ARefusedMessageStaysWithTheWordsOfTheServer) {
    for (const DeliveryFate fate : {DeliveryFate::Refused, DeliveryFate::Failed}) {
        World world;
        world.Answer(fate, "550 5.1.1 no such user");
        EXPECT_EQ(world.Release(), FileProblem::NotTaken);
        EXPECT_EQ(world.answer, Text("550 5.1.1 no such user"));
        EXPECT_EQ(world.path, Text("/archive/a.EML"));
        EXPECT_EQ(world.Names(), QStringList{Text("a.EML")});
        EXPECT_EQ(world.files.Bytes(Text("/archive/a.EML")), blocked);
    }
}

TEST(TransmittingWay, OneThatMayHaveBeenDeliveredGetsTheMark) {
    World world;
    world.Answer(DeliveryFate::Uncertain, "it broke");
    EXPECT_EQ(world.Release(), FileProblem::Uncertain);
    EXPECT_EQ(world.path, Text("/archive/a.uncertain.EML"));
    EXPECT_EQ(world.Names(), QStringList{Text("a.uncertain.EML")});
    EXPECT_EQ(world.files.Bytes(world.path), blocked);
}

TEST(TransmittingWay, WithoutARecipientNothingIsSent) {
    World world(own);
    EXPECT_EQ(world.Release(), FileProblem::NotTaken);
    EXPECT_TRUE(world.transmissions.sent.empty());
    EXPECT_EQ(world.Names(), QStringList{Text("a.EML")});
}

TEST(TransmittingWay, WhatHasGoneIsNotSent) {
    World world;
    world.files.Remove(Text("/archive/a.EML"));
    EXPECT_EQ(world.Release(), FileProblem::Missing);
    EXPECT_TRUE(world.transmissions.sent.empty());
}

TEST(TransmittingWay, NothingBeginsOnceItIsStopped) {
    World world;
    const std::unique_ptr<TransmittingWay> way = world.NewWay();
    way->Stop();
    EXPECT_THROW(way->Release(Text("a.EML")), FileError);
    EXPECT_TRUE(world.transmissions.sent.empty());
    EXPECT_EQ(world.Names(), QStringList{Text("a.EML")});
}

TEST(TransmittingWay, WhicheverCallFailsTheMessageIsInOnePlaceOrDelivered) {
    const auto fates = {DeliveryFate::Delivered, DeliveryFate::Refused, DeliveryFate::Uncertain};
    for (const DeliveryFate fate : fates) {
        for (int call = 1; call < 40; ++call) {
            World world;
            world.Answer(fate, "words");
            const int before = world.files.CallCount();
            world.files.FailCall(call);
            const std::optional<FileProblem> problem = world.Release();
            const bool wasFailing = world.files.CallCount() - before >= call;
            const QStringList names = world.Names();
            const bool wasSent = !world.transmissions.sent.empty();
            if (names.isEmpty()) {
                EXPECT_EQ(problem, std::nullopt);
                EXPECT_TRUE(wasSent && fate == DeliveryFate::Delivered);
            } else {
                ASSERT_EQ(names.size(), 1);
                EXPECT_TRUE(problem) << "call " << call;
                EXPECT_EQ(world.files.Bytes(world.archive.PathOf(names[0])), blocked);
                EXPECT_FALSE(names[0] == Text("a.EML") && wasSent && fate != DeliveryFate::Refused)
                    << "it looks as if it had not been sent, call " << call;
            }
            if (!wasFailing) {
                ASSERT_GT(call, 3) << "some call has failed";
                break;
            }
        }
    }
}

} // namespace quellbox
