#include "delivery/OutgoingMessage.h"

#include "mail/OwnServer.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

Envelope EnvelopeIn(const QByteArray& message, const char* profile) {
    return EnvelopeOf(message, ProfileOf(QString::fromLatin1(profile)));
}

QByteArray Stripped(const QByteArray& message, const char* profile) {
    return WithoutServerFields(message, ProfileOf(QString::fromLatin1(profile)));
}

} // namespace

TEST(OutgoingMessage, TheIntelligentMessageFilterWritesAFieldForEachRecipient) {
    const Envelope envelope = EnvelopeIn("x-sender: a@example.org\r\nx-receiver: b@example.net\r\n"
                                         "x-receiver: c@example.net\r\nReceived: from x\r\nSubject: s\r\n\r\n",
                                         "imf");
    EXPECT_EQ(envelope.sender, "a@example.org");
    EXPECT_EQ(envelope.recipients, (QByteArrayList{"b@example.net", "c@example.net"}));
}

TEST(OutgoingMessage, AmavisWritesThemWithCommas) {
    const Envelope envelope = EnvelopeIn("X-Envelope-From: <a@example.org>\nX-Envelope-To: <b@example.net>,\n"
                                         " <\"c, d\"@example.net>, <b@example.net>\nReceived: from x\n\n",
                                         "amavis");
    EXPECT_EQ(envelope.sender, "a@example.org");
    EXPECT_EQ(envelope.recipients, (QByteArrayList{"b@example.net", "\"c, d\"@example.net"})) << "each once";
}

TEST(OutgoingMessage, ThoseToWhomAmavisBlockedItComeFirst) {
    const Envelope envelope = EnvelopeIn("X-Envelope-To: <b@example.net>, <c@example.net>\n"
                                         "X-Envelope-To-Blocked: <c@example.net>\nReceived: from x\n\n",
                                         "amavis");
    EXPECT_EQ(envelope.recipients, QByteArrayList{"c@example.net"});
}

TEST(OutgoingMessage, OutOfAMaildirAMessageGoesToWhomItWasSent) {
    const QByteArray message = "Return-Path: <bounce@shop.example>\nX-Original-To: jo@corp.example\n"
                               "Delivered-To: junk-jo@corp.example\nX-Spam-Status: Yes, score=12.4\n"
                               "Received: from mail.shop.example\nTo: jo@corp.example\n\nbody\n";
    const ServerProfile& profile = ProfileOf(QStringLiteral("maildir"));
    const Envelope envelope = EnvelopeOf(message, profile);
    EXPECT_EQ(envelope.sender, "bounce@shop.example");
    EXPECT_EQ(envelope.recipients, QByteArrayList{"jo@corp.example"});
    EXPECT_TRUE(WithoutServerFields(message, profile).startsWith("Received: from mail.shop.example"));
}

TEST(OutgoingMessage, OfNestedDeliveriesTheLastOneCounts) {
    const Envelope envelope = EnvelopeIn("Return-Path: <a@example.org>\nDelivered-To: b@example.net\n"
                                         "Delivered-To: list@example.org\nReceived: from x\n\n",
                                         "spamassassin");
    EXPECT_EQ(envelope.sender, "a@example.org");
    EXPECT_EQ(envelope.recipients, QByteArrayList{"b@example.net"});
}

TEST(OutgoingMessage, OfADescribedServerWhatItIsSaidToWriteStays) {
    OwnServer server;
    server.rating = QStringLiteral("X-Junk");
    server.senders = QStringLiteral("X-From");
    server.recipients = QStringLiteral("X-To");
    server.reasons = QStringLiteral("X-Why");
    const QByteArray onTop = "X-Why: bulk\nX-Junk: 9\nX-From: <a@example.org>\nX-To: b@example.net\n";
    const QByteArray rest = "Received: from x\nX-Junk-Score: 1\nX-Why: the sender's\nSubject: s\n\n";
    const Envelope envelope = EnvelopeOf(onTop + rest, MakeOwnProfile(server));
    EXPECT_EQ(envelope.sender, "a@example.org");
    EXPECT_EQ(envelope.recipients, QByteArrayList{"b@example.net"});
    EXPECT_EQ(WithoutServerFields(onTop + rest, MakeOwnProfile(server)), rest);
    const QByteArray foreign = "X-Junk-Score: 1\n" + onTop + rest;
    EXPECT_EQ(WithoutServerFields(foreign, MakeOwnProfile(server)), foreign) << "another name, though it begins so";
}

TEST(OutgoingMessage, OfADescribedServerWhatBelongsToAMessageGoesOut) {
    OwnServer server;
    server.rating = QStringLiteral("Subject");
    server.reasons = QStringLiteral("Comments, Received, Content-Type");
    const QByteArray message = "Subject: 9 points\nComments: c\nContent-Type: text/plain\nReceived: from x\n"
                               "To: b@example.net\n\n";
    EXPECT_EQ(WithoutServerFields(message, MakeOwnProfile(server)), message);
}

TEST(OutgoingMessage, WhatTheSenderWroteChoosesNoRecipient) {
    for (const char* profile : {"imf", "exchange", "amavis", "rspamd", "spamassassin", "maildir"}) {
        const Envelope envelope =
            EnvelopeIn("Received: from x\nX-Sender: evil@example.org\nX-Receiver: evil@example.org\n"
                       "X-Envelope-From: evil@example.org\nX-Envelope-To: evil@example.org\n"
                       "Return-Path: <evil@example.org>\nDelivered-To: evil@example.org\n"
                       "X-Original-To: evil@example.org\nEnvelope-To: evil@example.org\nTo: evil@example.org\n\n",
                       profile);
        EXPECT_EQ(envelope.sender, "") << profile;
        EXPECT_TRUE(envelope.recipients.isEmpty()) << profile;
    }
}

TEST(OutgoingMessage, WithoutATraceOfTheReceptionNothingIsBelieved) {
    const Envelope envelope = EnvelopeIn("Return-Path: <a@example.org>\nDelivered-To: b@example.net\n"
                                         "X-Original-To: evil@example.org\nSubject: s\n\n",
                                         "rspamd");
    EXPECT_TRUE(envelope.recipients.isEmpty());
}

TEST(OutgoingMessage, WhatFollowsAForeignFieldIsNotBelieved) {
    const Envelope envelope = EnvelopeIn("Return-Path: <a@example.org>\nDelivered-To: b@example.net\nSubject: s\n"
                                         "X-Original-To: evil@example.org\nReceived: of the sender\n\n",
                                         "rspamd");
    EXPECT_EQ(envelope.recipients, QByteArrayList{"b@example.net"});
    EXPECT_TRUE(EnvelopeIn("Subject: s\nDelivered-To: evil@example.org\nReceived: of the sender\n\n", "rspamd")
                    .recipients.isEmpty());
}

TEST(OutgoingMessage, TheTopmostFieldCounts) {
    const Envelope envelope = EnvelopeIn("Delivered-To: b@example.net\nX-Original-To: evil@example.org\n"
                                         "Received: of the sender\n\n",
                                         "rspamd");
    EXPECT_EQ(envelope.recipients, QByteArrayList{"b@example.net"});
    EXPECT_EQ(EnvelopeIn("X-Envelope-To: <b@example.net>\nX-Quarantine-ID: <1>\n"
                         "X-Envelope-To-Blocked: <evil@example.org>\nReceived: from x\n\n",
                         "amavis")
                  .recipients,
              QByteArrayList{"b@example.net"});
}

TEST(OutgoingMessage, TheSenderOfBouncesIsNone) {
    EXPECT_EQ(EnvelopeIn("Return-Path: <>\nDelivered-To: b@example.net\nReceived: from x\n\n", "rspamd").sender, "");
}

TEST(OutgoingMessage, OnlyWhatTheServerHasPutOnTopGoes) {
    const QByteArray own = "Received: from x\r\n\tby y\r\nX-Spam-Status: of the sender\r\nDKIM-Signature: v=1;\r\n"
                           " b=abc\r\nX-Envelope-To: of the sender\r\n\r\nX-Spam-Score: body\r\n.\r\n\xE4\n";
    EXPECT_EQ(Stripped("Return-Path: <a@example.org>\r\nX-Spam-Status: Yes,\r\n\tscore=9\r\n"
                       "Delivered-To: b@example.net\r\nX-Other: kept\r\n" +
                           own,
                       "spamassassin"),
              "X-Other: kept\r\n" + own);
    EXPECT_EQ(Stripped("X-Quarantine-ID: <x>\nX-Envelope-From: <a>\nX-Envelope-To: <b>\nX-Amavis-Alert: BANNED\n"
                       "X-Spam-Score: 7\n" +
                           own,
                       "amavis"),
              own);
    EXPECT_EQ(Stripped("x-sender: a\r\nx-receiver: b\r\nx-receiver: c\r\nX-SCL: 9 99%\r\n" + own, "imf"), own);
}

TEST(OutgoingMessage, BlindCopiesGoWhereverTheyStand) {
    EXPECT_EQ(
        Stripped("Received: from x\nbcc : secret@example.org,\n more@example.org\nSubject: s\n\nBcc: body\n", "rspamd"),
        "Received: from x\nSubject: s\n\nBcc: body\n");
}

TEST(OutgoingMessage, TheLineOfAMailboxGoes) {
    EXPECT_EQ(Stripped("From a@example.org Mon Jan  1 12:00:00 2026\nReceived: from x\n\nFrom here\n", "rspamd"),
              "Received: from x\n\nFrom here\n");
}

TEST(OutgoingMessage, WhatIsNoMessageStaysAsItIs) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("\n"), QByteArray("no field"), QByteArray(" folded\n\n"),
                                    QByteArray(100, '\0'), QByteArray("\r\nX-Spam-Flag: YES\r\n")}) {
        EXPECT_EQ(Stripped(bytes, "spamassassin"), bytes);
        EXPECT_TRUE(EnvelopeIn(bytes, "spamassassin").recipients.isEmpty());
    }
}

} // namespace quellbox
