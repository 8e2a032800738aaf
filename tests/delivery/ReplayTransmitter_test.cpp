#include "delivery/ReplayTransmitter.h"

#include "delivery/TransmittingWay.h"
#include "platform/RuntimeError.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemoryFileSystem.h"

#include <gtest/gtest.h>

#include <optional>

namespace quellbox {

namespace {

const QByteArray own = "Received: from x\r\nSubject: s\r\n\r\nbody\r\n";
const QByteArray blocked = "X-Envelope-From: <a@example.org>\r\nX-Envelope-To: <b@example.net>\r\n" + own;
const QByteArray replayed = "X-Sender: <a@example.org>\r\nX-Receiver: <b@example.net>\r\n" + own;

QString Text(const char* text) {
    return QString::fromUtf8(text);
}

/// Files in memory on a share: one of the calls that change something goes wrong in a way of its own.
class FaultyShare : public MemoryFileSystem {
public:
    /// The n-th call from now, counted from 1, is done or not, and then fails so.
    void SetFault(int call, FileProblem problem, bool isDone) {
        callsLeft_ = call;
        problem_ = problem;
        isDone_ = isDone;
    }

    /// A server takes what is called *.eml as soon as it is there.
    void LetServerTake() { serverTakes_ = true; }

    bool HasFailed() const { return callsLeft_ == 0; }
    int TakenCount() const { return taken_; }

    void Move(const QString& from, const QString& to) override {
        Change(to, [&] {
            MemoryFileSystem::Move(from, to);
            Serve(to);
        });
    }

    void WriteWhole(const QString& path, const QByteArray& bytes) override {
        Change(path, [&] {
            MemoryFileSystem::WriteWhole(path, bytes);
            Serve(path);
        });
    }

    bool RemoveEvenReadOnly(const QString& path) override {
        bool wasThere = false;
        Change(path, [&] { wasThere = MemoryFileSystem::RemoveEvenReadOnly(path); });
        return wasThere;
    }

private:
    template <class Call>
    void Change(const QString& path, Call call) {
        const bool fails = callsLeft_ > 0 && --callsLeft_ == 0;
        if (!fails || isDone_) {
            call();
        }
        if (fails) {
            throw FileError(path, Text("it went wrong"), problem_);
        }
    }

    void Serve(const QString& path) {
        if (serverTakes_ && path.endsWith(QLatin1String(".eml"))) {
            EXPECT_EQ(Bytes(path), replayed) << "the server has seen a part";
            taken_ += MemoryFileSystem::Remove(path) ? 1 : 0;
        }
    }

    int callsLeft_ = -1;
    FileProblem problem_ = FileProblem::Other;
    bool isDone_ = false;
    bool serverTakes_ = false;
    int taken_ = 0;
};

/// An archive with one message, and a replay directory.
struct ReplayWorld {
    ReplayWorld() {
        files.AddFolder(archive);
        files.AddFolder(replay);
        files.Add(archive.PathOf(Text("a.EML")), blocked);
    }

    std::optional<FileProblem> Release() {
        TransmittingWay way(files, clock, archive, ProfileOf(Text("amavis")),
                            std::make_unique<ReplayTransmitter>(files, replay));
        try {
            answer = way.Release(Text("a.EML"));
            return std::nullopt;
        } catch (const FileError& error) {
            answer = error.Reason();
            return error.Problem();
        }
    }

    QStringList NamesIn(const Folder& folder) const {
        QStringList names;
        for (const QString& path : files.Paths()) {
            if (path.startsWith(folder.Text())) {
                names.append(path.mid(folder.Text().size()));
            }
        }
        return names;
    }

    /// Whether everybody knows what has become of the message.
    void ExpectNothingLostOrSilent(const std::optional<FileProblem>& problem, const std::string& fault) const {
        int copies = files.TakenCount();
        for (const QString& name : NamesIn(replay)) {
            if (name.endsWith(QLatin1String(".eml"))) {
                EXPECT_EQ(files.Bytes(replay.PathOf(name)), replayed) << fault;
                ++copies;
            }
        }
        EXPECT_LE(copies, 1) << fault;
        const QStringList kept = NamesIn(archive);
        ASSERT_LE(kept.size(), 1) << fault;
        EXPECT_EQ(problem.has_value(), !kept.isEmpty()) << fault;
        if (kept.isEmpty()) {
            EXPECT_EQ(copies, 1) << "lost, " << fault;
            return;
        }
        EXPECT_EQ(files.Bytes(archive.PathOf(kept[0])), blocked) << fault;
        EXPECT_FALSE(kept[0] == Text("a.EML") && copies == 1) << "looks as if it had not been delivered, " << fault;
    }

    const Folder archive = Text("/archive/");
    const Folder replay = Text("/replay/");
    FaultyShare files;
    FixedClock clock{QDateTime(QDate(2026, 6, 15), QTime(12, 0))};
    QString answer;
};

DeliveryOutcome Transmit(FileSystem& files, const Folder& folder, const OutgoingMessage& message) {
    return ReplayTransmitter(files, folder).Transmit([&message] { return message; }, [] { return true; });
}

} // namespace

TEST(ReplayTransmitter, TheEnvelopeStandsAboveTheMessage) {
    EXPECT_EQ(ReplayText({{"a@example.org", {"b@example.net", "c@example.net"}}, "Subject: s\n\nbody"}),
              "X-Sender: <a@example.org>\r\nX-Receiver: <b@example.net>\r\nX-Receiver: <c@example.net>\r\n"
              "Subject: s\r\n\r\nbody\r\n");
    EXPECT_EQ(ReplayText({{{}, {"b@example.net"}}, own}), "X-Sender: <>\r\nX-Receiver: <b@example.net>\r\n" + own);
}

TEST(ReplayTransmitter, WhatTheServerWouldTakeForItsOwnIsRefused) {
    MemoryFileSystem files;
    const Folder replay(Text("/replay"));
    files.AddFolder(replay);
    for (const char* field : {"X-Sender", "x-receiver", "X-CreatedBy", "X-EndOfInjectedXHeaders"}) {
        const OutgoingMessage message{{"a@example.org", {"b@example.net"}}, field + QByteArray(": <c@d.e>\r\n") + own};
        EXPECT_EQ(Transmit(files, replay, message).fate, DeliveryFate::Failed) << field;
    }
    EXPECT_TRUE(files.Paths().isEmpty());
}

TEST(ReplayTransmitter, NamesAreThoseOfTheArchiveWhereAWindowsShareAllowsThem) {
    EXPECT_EQ(ReplayName(Text("a.EML"), 1), Text("a.eml"));
    EXPECT_EQ(ReplayName(Text("a.EML"), 2), Text("a-2.eml"));
    EXPECT_EQ(ReplayName(Text("spam-1.2.gz"), 1), Text("spam-1.2.eml"));
    EXPECT_EQ(ReplayName(Text("a"), 1), Text("a.eml"));
    EXPECT_EQ(ReplayName(Text("a:b?c*d|e<f>g\"h\\i/j\n.eml"), 1), Text("a_b_c_d_e_f_g_h_i_j_.eml"));
    EXPECT_EQ(ReplayName(Text(".eml"), 1), Text("_.eml"));
    EXPECT_EQ(ReplayName(Text("Con.eml"), 1), Text("_Con.eml"));
    EXPECT_EQ(ReplayName(Text("com1.x.eml"), 1), Text("_com1.x.eml"));
    EXPECT_EQ(ReplayName(Text("console.eml"), 1), Text("console.eml"));
    EXPECT_EQ(ReplayName(Text("Grüße.eml"), 1), Text("Grüße.eml"));
}

TEST(ReplayTransmitter, AMessageGoesIntoTheDirectoryAsAWhole) {
    ReplayWorld world;
    EXPECT_EQ(world.Release(), std::nullopt);
    EXPECT_EQ(world.answer, Text("Written into the replay directory as a.eml."));
    EXPECT_TRUE(world.NamesIn(world.archive).isEmpty());
    EXPECT_EQ(world.NamesIn(world.replay), QStringList{Text("a.eml")});
    EXPECT_EQ(world.files.Bytes(Text("/replay/a.eml")), replayed);
}

TEST(ReplayTransmitter, NoOtherFileIsReplaced) {
    ReplayWorld world;
    world.files.Add(Text("/replay/a.eml"), "first");
    world.files.Add(Text("/replay/a-2.eml"), "second");
    EXPECT_EQ(world.Release(), std::nullopt);
    EXPECT_EQ(world.NamesIn(world.replay), (QStringList{Text("a-2.eml"), Text("a-3.eml"), Text("a.eml")}));
    EXPECT_EQ(world.files.Bytes(Text("/replay/a.eml")), "first");
    EXPECT_EQ(world.files.Bytes(Text("/replay/a-2.eml")), "second");
    EXPECT_EQ(world.files.Bytes(Text("/replay/a-3.eml")), replayed);
}

TEST(ReplayTransmitter, TellsWhereTheFileIs) {
    ReplayWorld world;
    const DeliveryOutcome outcome = Transmit(world.files, world.replay, {{{}, {"b@example.net"}}, own, Text("x.eml")});
    EXPECT_EQ(outcome.fate, DeliveryFate::Delivered);
    EXPECT_EQ(outcome.path, Text("/replay/x.eml"));
    EXPECT_EQ(ReplayTransmitter(world.files, world.replay).Target(), Text("replay:/replay/"));
    EXPECT_TRUE(IsReleaseTarget(Text("replay:/replay/")));
    EXPECT_FALSE(IsReleaseTarget(Text("/replay/")));
}

TEST(ReplayTransmitter, WhatTheSenderHasWrittenIsNoPartOfTheEnvelope) {
    ReplayWorld world;
    const Envelope envelope{"a@example.org", {"b@example.net"}};
    for (const char* beginning : {"X-Receiver: <c@example.com>\r\n", "x-sender: <c@example.com>\r\n",
                                  "X-Other: 1\r\nX-RECEIVER: <c@example.com>\r\n", " folded\r\n"}) {
        const DeliveryOutcome outcome =
            Transmit(world.files, world.replay, {envelope, QByteArray(beginning) + own, Text("x.eml")});
        EXPECT_EQ(outcome.fate, DeliveryFate::Failed) << beginning;
        EXPECT_FALSE(outcome.words.isEmpty());
    }
    EXPECT_TRUE(world.NamesIn(world.replay).isEmpty());
    const QByteArray below = "Received: from x\r\nX-Receiver: <c@example.com>\r\n\r\nbody";
    EXPECT_EQ(Transmit(world.files, world.replay, {envelope, below, Text("x.eml")}).fate, DeliveryFate::Delivered);
}

TEST(ReplayTransmitter, AnEnvelopeThatIsNoneIsNotWritten) {
    ReplayWorld world;
    for (const Envelope& envelope :
         {Envelope{"a@example.org", {}}, Envelope{"a@example.org", {"b@example.net>\r\nX-Receiver: <c@example.com"}},
          Envelope{"a\r\nb", {"b@example.net"}}}) {
        EXPECT_EQ(Transmit(world.files, world.replay, {envelope, own, Text("x.eml")}).fate, DeliveryFate::Failed);
    }
    EXPECT_EQ(Transmit(world.files, Folder(), {{{}, {"b@example.net"}}, own, Text("x.eml")}).fate,
              DeliveryFate::Failed);
    EXPECT_EQ(world.files.Paths(), QStringList{Text("/archive/a.EML")});
}

TEST(ReplayTransmitter, NothingBeginsOnceItIsStopped) {
    ReplayWorld world;
    bool wasLoaded = false;
    const DeliveryOutcome outcome = ReplayTransmitter(world.files, world.replay)
                                        .Transmit(
                                            [&wasLoaded]() -> std::optional<OutgoingMessage> {
                                                wasLoaded = true;
                                                return std::nullopt;
                                            },
                                            [] { return false; });
    EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
    EXPECT_FALSE(wasLoaded);
}

TEST(ReplayTransmitter, WithoutTheRightToWriteTheMessageStaysAsItWas) {
    ReplayWorld world;
    world.files.SetFault(2, FileProblem::NoRight, false);
    EXPECT_EQ(world.Release(), FileProblem::NotTaken);
    EXPECT_EQ(world.answer, Text("/replay/: it went wrong"));
    EXPECT_EQ(world.NamesIn(world.archive), QStringList{Text("a.EML")});
    EXPECT_TRUE(world.NamesIn(world.replay).isEmpty());
}

TEST(ReplayTransmitter, WithoutTheRightToRenameItStaysAsItWas) {
    ReplayWorld world;
    world.files.SetFault(3, FileProblem::NoRight, false);
    EXPECT_EQ(world.Release(), FileProblem::NotTaken);
    EXPECT_EQ(world.NamesIn(world.archive), QStringList{Text("a.EML")});
    EXPECT_TRUE(world.NamesIn(world.replay).isEmpty());
}

TEST(ReplayTransmitter, WhereOnlyTheAnswerIsLostTheFileTells) {
    ReplayWorld world;
    world.files.SetFault(3, FileProblem::NoAnswer, true);
    EXPECT_EQ(world.Release(), std::nullopt);
    EXPECT_EQ(world.NamesIn(world.replay), QStringList{Text("a.eml")});
}

TEST(ReplayTransmitter, WhatTheServerMayHaveTakenGetsTheMark) {
    ReplayWorld world;
    world.files.LetServerTake();
    world.files.SetFault(3, FileProblem::NoAnswer, true);
    EXPECT_EQ(world.Release(), FileProblem::Uncertain);
    EXPECT_EQ(world.files.TakenCount(), 1);
    EXPECT_EQ(world.NamesIn(world.archive), QStringList{Text("a.uncertain.EML")});
}

TEST(ReplayTransmitter, WhicheverCallFailsTheMessageIsInOnePlaceOrNamed) {
    for (int call = 1; call < 40; ++call) {
        ReplayWorld world;
        const int before = world.files.CallCount();
        world.files.FailCall(call);
        const std::optional<FileProblem> problem = world.Release();
        world.ExpectNothingLostOrSilent(problem, "call " + std::to_string(call));
        if (world.files.CallCount() - before < call) {
            ASSERT_GT(call, 6) << "all calls have been tried";
            return;
        }
    }
    FAIL() << "there is no end of calls";
}

TEST(ReplayTransmitter, WhicheverChangeGoesWrongHoweverTheMessageIsInOnePlaceOrNamed) {
    const auto problems = {FileProblem::Other,  FileProblem::Missing, FileProblem::Exists,  FileProblem::NoRight,
                           FileProblem::NoRoom, FileProblem::InUse,   FileProblem::NoAnswer};
    int faults = 0;
    for (const FileProblem problem : problems) {
        for (const bool isTaken : {false, true}) {
            for (const bool isDone : {false, true}) {
                // Only where no answer comes may a call have been done that has failed.
                if (isDone && problem != FileProblem::NoAnswer && problem != FileProblem::Other) {
                    continue;
                }
                for (int call = 1; call <= 4; ++call) {
                    ReplayWorld world;
                    if (isTaken) {
                        world.files.LetServerTake();
                    }
                    world.files.SetFault(call, problem, isDone);
                    const std::optional<FileProblem> told = world.Release();
                    EXPECT_TRUE(world.files.HasFailed());
                    const bool wasTakenOut = isDone && call == 1; // nobody knows that it is in the hidden folder
                    const bool wasRemoved = isDone && call == 4;  // told, although nothing is left
                    if (!wasTakenOut && !wasRemoved) {
                        world.ExpectNothingLostOrSilent(told, "problem " + std::to_string(static_cast<int>(problem)) +
                                                                  ", taken " + std::to_string(isTaken) + ", done " +
                                                                  std::to_string(isDone) + ", call " +
                                                                  std::to_string(call));
                        ++faults;
                    }
                }
            }
        }
    }
    EXPECT_EQ(faults, 7 * 2 * 4 + 2 * 2 * 2);
}

} // namespace quellbox
