#include "delivery/DeliveryCommand.h"

#include "tests/support/RealFiles.h"

#include <atomic>

namespace quellbox {

namespace {

using namespace std::chrono_literals;

QStringList WordsOf(const char* line) {
    const auto command = ParseDeliveryCommand(Text(line));
    return command ? QStringList(command->program) + command->arguments : QStringList();
}

QStringList List(std::initializer_list<const char*> texts) {
    QStringList list;
    for (const char* text : texts) {
        list += Text(text);
    }
    return list;
}

TEST(DeliveryCommandTest, DefaultCommandIsOne) {
    const auto command = ParseDeliveryCommand(DefaultDeliveryCommand());
    ASSERT_TRUE(command);
    EXPECT_EQ(command->program, Text("sendmail"));
    EXPECT_EQ(command->arguments, List({"-i", "-f", "SENDER", "--", "RECIPIENT..."}));
}

TEST(DeliveryCommandTest, WordsAreThoseOfAShell) {
    EXPECT_EQ(WordsOf("  a\t b   RECIPIENT "), List({"a", "b", "RECIPIENT"}));
    EXPECT_EQ(WordsOf("'/a b/c' \"d e\"f RECIPIENT..."), List({"/a b/c", "d ef", "RECIPIENT..."}));
    EXPECT_EQ(WordsOf("a '' \"\" RECIPIENT"), List({"a", "", "", "RECIPIENT"}));
    EXPECT_EQ(WordsOf("a\\ b '\\n' \"\\\"\\$\\\\\\n\" RECIPIENT"), List({"a b", "\\n", "\"$\\\\n", "RECIPIENT"}));
    EXPECT_EQ(WordsOf("a $HOME `id` | b > c ; RECIPIENT"),
              List({"a", "$HOME", "`id`", "|", "b", ">", "c", ";", "RECIPIENT"}));
    EXPECT_EQ(WordsOf("\"C:\\Program Files\\x.exe\" RECIPIENT"), List({"C:\\Program Files\\x.exe", "RECIPIENT"}));
}

TEST(DeliveryCommandTest, WhatIsWrongIsToldInWords) {
    for (const char* line :
         {"", "  ", "''", "RECIPIENT...", "sendmail -i", "sendmail 'RECIPIENT...", "sendmail \"RECIPIENT...",
          "sendmail --to=RECIPIENT...", "sendmail xRECIPIENT... RECIPIENT..."}) {
        QString problem;
        EXPECT_FALSE(ParseDeliveryCommand(Text(line), &problem)) << line;
        EXPECT_FALSE(problem.isEmpty()) << line;
    }
    QString problem = Text("old");
    EXPECT_TRUE(ParseDeliveryCommand(Text("sendmail RECIPIENT..."), &problem));
    EXPECT_TRUE(problem.isEmpty());
}

#ifndef _WIN32

/// Runs a small script in the place of a mail program.
class DeliveryCommandRunTest : public RealFilesTest {
protected:
    QString Script(const QByteArray& body) const {
        const QString path = Path("mail program");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\ncd '" + folder_.path().toUtf8() + "'\n" + body);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    DeliveryOutcome Run(const QByteArray& body, const QStringList& arguments = List({"RECIPIENT..."}),
                        std::chrono::milliseconds limit = 60s, const std::function<bool()>& goOn = {}) const {
        return RunDeliveryCommand({Script(body), arguments}, envelope_, message_, limit, goOn);
    }

    QByteArray Written(const char* name) const {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    Envelope envelope_{"joe@example.com", {"ann@example.com"}};
    QByteArray message_ = "Subject: a\r\n\r\n.\r\nb\xE9\r\n";
};

constexpr const char* writeArguments = "cat > message\nfor a; do printf '%s|' \"$a\"; done > arguments\n";

TEST_F(DeliveryCommandRunTest, ProgramGetsEnvelopeAndMessage) {
    envelope_.recipients += "\"b c\"@example.com";
    const DeliveryOutcome outcome = Run(writeArguments + QByteArray("echo queued as 17\n"),
                                        List({"-f", "SENDER", "-rSENDER", "$HOME", "--", "RECIPIENT..."}));
    EXPECT_EQ(outcome.fate, DeliveryFate::Delivered);
    EXPECT_EQ(outcome.words, Text("queued as 17"));
    EXPECT_EQ(Written("arguments"),
              "-f|joe@example.com|-rjoe@example.com|$HOME|--|ann@example.com|\"b c\"@example.com|");
    EXPECT_EQ(Written("message"), message_);
}

TEST_F(DeliveryCommandRunTest, SenderOfABounceIsWritten) {
    envelope_.sender.clear();
    EXPECT_EQ(Run(writeArguments, List({"-f", "SENDER", "--from=SENDER", "RECIPIENT..."})).fate,
              DeliveryFate::Delivered);
    EXPECT_EQ(Written("arguments"), "-f|<>|--from=|ann@example.com|");
}

TEST_F(DeliveryCommandRunTest, NothingInAnAddressIsReplaced) {
    envelope_ = {"RECIPIENT@example.com", {"SENDER", "RECIPIENT..."}};
    EXPECT_EQ(Run(writeArguments, List({"SENDER", "RECIPIENT..."})).fate, DeliveryFate::Delivered);
    EXPECT_EQ(Written("arguments"), "RECIPIENT@example.com|SENDER|RECIPIENT...|");
}

TEST_F(DeliveryCommandRunTest, RecipientAloneStandsForOneOnly) {
    EXPECT_EQ(Run(writeArguments, List({"--to=RECIPIENT"})).fate, DeliveryFate::Delivered);
    EXPECT_EQ(Written("arguments"), "--to=ann@example.com|");
    envelope_.recipients += "ben@example.com";
    QFile::remove(Path("message"));
    const DeliveryOutcome outcome = Run(writeArguments, List({"--to=RECIPIENT"}));
    EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
    EXPECT_FALSE(outcome.words.isEmpty());
    EXPECT_EQ(Written("message"), "(no file)");
}

TEST_F(DeliveryCommandRunTest, AddressIsNeverAnOption) {
    envelope_.recipients = {"-oQ/tmp"};
    EXPECT_EQ(Run(writeArguments).fate, DeliveryFate::Failed);
    EXPECT_EQ(Run(writeArguments, List({"RECIPIENT..."})).fate, DeliveryFate::Failed);
    EXPECT_EQ(Run(writeArguments, List({"RECIPIENT", "--"})).fate, DeliveryFate::Failed);
    EXPECT_EQ(Written("message"), "(no file)");
    EXPECT_EQ(Run(writeArguments, List({"--", "RECIPIENT..."})).fate, DeliveryFate::Delivered);
    EXPECT_EQ(Written("arguments"), "--|-oQ/tmp|");
    envelope_ = {"-X/tmp/log", {"ann@example.com"}};
    EXPECT_EQ(Run(writeArguments, List({"-f", "SENDER", "--", "RECIPIENT..."})).fate, DeliveryFate::Failed);
    EXPECT_EQ(Run(writeArguments, List({"-fSENDER", "--", "RECIPIENT..."})).fate, DeliveryFate::Delivered);
    EXPECT_EQ(Written("arguments"), "-f-X/tmp/log|--|ann@example.com|");
}

TEST_F(DeliveryCommandRunTest, UnsafeAddressesAreNotHandedOn) {
    for (const char* address :
         {"a b@example.com", "<ann@example.com>", "ann@example.com,eve@spam.example", "a;b", "a\nb", ""}) {
        envelope_.recipients = {address};
        EXPECT_EQ(Run(writeArguments).fate, DeliveryFate::Failed) << address;
    }
    EXPECT_EQ(Written("message"), "(no file)");
}

TEST_F(DeliveryCommandRunTest, OtherCodesAreRefusals) {
    const DeliveryOutcome outcome = Run("cat > message\necho no such user >&2\nexit 67\n");
    EXPECT_EQ(outcome.fate, DeliveryFate::Refused);
    EXPECT_TRUE(outcome.words.contains(Text("67")) && outcome.words.contains(Text("no such user")));
}

TEST_F(DeliveryCommandRunTest, ProgramThatDoesNotReadMayRefuse) {
    message_ = QByteArray(20'000'000, 'x');
    const DeliveryOutcome outcome = Run("echo closed today\nexit 75\n");
    EXPECT_EQ(outcome.fate, DeliveryFate::Refused);
    EXPECT_TRUE(outcome.words.contains(Text("closed today")));
}

TEST_F(DeliveryCommandRunTest, LargeMessageArrivesWhole) {
    message_ = QByteArray("0123456789abcdef\r\n").repeated(1'500'000);
    EXPECT_EQ(Run("cat > message\n").fate, DeliveryFate::Delivered);
    EXPECT_EQ(Written("message"), message_);
}

TEST_F(DeliveryCommandRunTest, ProgramMayWriteMuchBeforeItReads) {
    message_ = QByteArray(5'000'000, 'x');
    const DeliveryOutcome outcome = Run("i=0\nwhile [ $i -lt 2000 ]; do echo 'a long line, again and again, that fills "
                                        "the pipe up to the brim and over it'; i=$((i+1)); done\ncat > message\n");
    EXPECT_EQ(outcome.fate, DeliveryFate::Delivered);
    EXPECT_LE(outcome.words.size(), 1001);
    EXPECT_EQ(Written("message"), message_);
}

TEST_F(DeliveryCommandRunTest, CrashLeavesTheMessageUncertain) {
    const DeliveryOutcome outcome = Run("cat > message\nkill -SEGV $$\n");
    EXPECT_EQ(outcome.fate, DeliveryFate::Uncertain);
    EXPECT_FALSE(outcome.words.isEmpty());
}

TEST_F(DeliveryCommandRunTest, LimitEndsTheProgram) {
    EXPECT_EQ(Run("cat > message\nexec sleep 600\n", List({"RECIPIENT..."}), 300ms).fate, DeliveryFate::Uncertain);
    message_ = QByteArray(20'000'000, 'x');
    EXPECT_EQ(Run("exec sleep 600\n", List({"RECIPIENT..."}), 300ms).fate, DeliveryFate::Uncertain);
}

TEST_F(DeliveryCommandRunTest, StopEndsTheProgram) {
    const auto goOn = [this] { return !QFile::exists(Path("message")); };
    EXPECT_EQ(Run("cat > message\nexec sleep 600\n", List({"RECIPIENT..."}), 600s, goOn).fate, DeliveryFate::Uncertain);
}

TEST_F(DeliveryCommandRunTest, NothingIsStartedAfterAStop) {
    EXPECT_EQ(Run(writeArguments, List({"RECIPIENT..."}), 60s, [] { return false; }).fate, DeliveryFate::Failed);
    EXPECT_EQ(Written("message"), "(no file)");
}

TEST_F(DeliveryCommandRunTest, ProgramThatCannotBeStartedHasFailed) {
    for (const QString& program : {Path("no such program"), Text("quellbox-no-such-program"), folder_.path()}) {
        const DeliveryOutcome outcome =
            RunDeliveryCommand({program, List({"RECIPIENT..."})}, envelope_, message_, 60s, {});
        EXPECT_EQ(outcome.fate, DeliveryFate::Failed);
        EXPECT_TRUE(outcome.words.contains(program)) << qPrintable(outcome.words);
    }
}

TEST_F(DeliveryCommandRunTest, ProgramIsLookedForInThePath) {
    ASSERT_TRUE(QFile::rename(Script(writeArguments), Path("quellbox-test-mail")));
    const ChangedVariable path("PATH", folder_.path().toUtf8() + ":" + qgetenv("PATH"));
    EXPECT_EQ(
        RunDeliveryCommand({Text("quellbox-test-mail"), List({"RECIPIENT..."})}, envelope_, message_, 60s, {}).fate,
        DeliveryFate::Delivered);
    EXPECT_EQ(Written("message"), message_);
}

TEST_F(DeliveryCommandRunTest, ProgramsOfTheAdministratorAreFoundWithoutThePath) {
    if (!QFile::exists(Text("/usr/sbin/nologin"))) {
        GTEST_SKIP() << "no program in /usr/sbin that is known to do nothing";
    }
    const ChangedVariable path("PATH", "/nowhere");
    // It says no, which only a program that was started can do.
    EXPECT_EQ(RunDeliveryCommand({Text("nologin"), List({"RECIPIENT..."})}, envelope_, message_, 60s, {}).fate,
              DeliveryFate::Refused);
}

#endif

} // namespace

} // namespace quellbox
