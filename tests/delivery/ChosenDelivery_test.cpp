#include "delivery/ChosenDelivery.h"

#include "settings/DeliveryKeys.h"
#include "tests/support/FixedClock.h"
#include "tests/support/MemoryFileSystem.h"
#include "tests/support/MemoryPasswordStore.h"
#include "tests/support/RunUntil.h"

#include <gtest/gtest.h>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

class ChosenDelivery : public testing::Test {
protected:
    ChosenDelivery() {
        state_.ArchiveDir = u"/archive/"_s;
        state_.PickupDir = u"/pickup/"_s;
        state_.SmtpHost = u"mail.example"_s;
        state_.SmtpPort = 587;
        state_.SmtpUser = u"joe"_s;
        state_.SmtpSecurity = QLatin1String(SecurityKeys::none);
        state_.DeliveryCommand = u"sendmail RECIPIENT..."_s;
    }

    void Choose(const char* key) { state_.Delivery = QLatin1String(key); }

    std::unique_ptr<Transmitter> NewTransmitter() { return MakeTransmitter(state_, files_, nullptr); }

    std::unique_ptr<ReleaseWay> NewWay() { return MakeReleaseWay(state_, files_, clock_, NewTransmitter()); }

    /// What is answered when the password is asked for.
    AwaitedPassword::Answer Ask() {
        QObject receiver;
        const std::shared_ptr<const AwaitedPassword> awaited = AskForPassword(passwords_, state_, receiver);
        passwords_.Release();
        const auto isThere = [&awaited] { return awaited->Await([] { return false; }).has_value(); };
        return RunUntil(isThere) ? *awaited->Await([] { return false; }) : AwaitedPassword::Answer{{}, u"none"_s};
    }

    AppState state_;
    MemoryFileSystem files_;
    FixedClock clock_{QDateTime(QDate(2026, 6, 15), QTime(12, 0))};
    MemoryPasswordStore passwords_;
};

} // namespace

TEST_F(ChosenDelivery, MessagesGoWhereTheSettingsSay) {
    Choose(DeliveryKeys::smtp);
    EXPECT_EQ(NewWay()->Target(), u"smtp://mail.example:587"_s);
    Choose(DeliveryKeys::command);
    EXPECT_EQ(NewWay()->Target(), u"command:sendmail"_s);
    Choose(DeliveryKeys::replay);
    EXPECT_EQ(TargetOf(NewWay().get(), state_), u"replay:"_s + state_.PickupDir.Text());
}

TEST_F(ChosenDelivery, ForThePickupDirectoryThereIsNoWay) {
    for (const char* key : {DeliveryKeys::pickup, "", "unknown"}) {
        Choose(key);
        EXPECT_EQ(NewTransmitter(), nullptr);
        EXPECT_EQ(NewWay(), nullptr);
        EXPECT_EQ(TargetOf(nullptr, state_), state_.PickupDir.Text());
    }
}

TEST_F(ChosenDelivery, OnlyAnAccountOfAMailServerNeedsAPassword) {
    Choose(DeliveryKeys::smtp);
    EXPECT_TRUE(NeedsPassword(state_));
    state_.SmtpUser.clear();
    EXPECT_FALSE(NeedsPassword(state_));
    state_.SmtpUser = u"joe"_s;
    for (const char* key : {DeliveryKeys::pickup, DeliveryKeys::replay, DeliveryKeys::command}) {
        Choose(key);
        EXPECT_FALSE(NeedsPassword(state_)) << key;
    }
}

TEST_F(ChosenDelivery, ThePasswordIsThatOfTheAccountInTheSettings) {
    passwords_.Keep(SmtpAccount(state_), u"secret"_s);
    const AwaitedPassword::Answer answer = Ask();
    EXPECT_EQ(answer.password, u"secret"_s);
    EXPECT_TRUE(answer.trouble.isEmpty());
}

TEST_F(ChosenDelivery, WhyThereIsNoPasswordIsToldInWords) {
    EXPECT_EQ(Ask().trouble, u"No password for the mail server is kept. Enter it in the options, on the page "
                             "\"Server\"."_s);
    passwords_.SetFault(MemoryPasswordStore::Fault::Locked);
    EXPECT_EQ(Ask().trouble, MemoryPasswordStore::ErrorOf(MemoryPasswordStore::Fault::Locked));
}

} // namespace quellbox
