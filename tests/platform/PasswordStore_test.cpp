#include "tests/support/PasswordStoreRules.h"

#ifdef _WIN32
#include "platform/WideText.h"

#include <windows.h>

#include <wincred.h>
#endif

namespace quellbox {

namespace {

const TriedPasswordStore memoryStore{"Memory", [] { return std::make_unique<MemoryPasswordStore>(); }};

#ifdef _WIN32

// Of other systems the real store is tried in tests/passwords/, in a session of its own.
const TriedPasswordStore windowsStore{"Windows", MakePasswordStore};
INSTANTIATE_TEST_SUITE_P(All, PasswordStoreRules, testing::Values(memoryStore, windowsStore));

TEST(WindowsPasswordStore, KeepsThePasswordForThisUserOnThisComputer) {
    const auto store = MakePasswordStore();
    PasswordStoreCaller call(*store);
    const QString account = Text("smtp:quellbox-test@mail.example:25");
    ASSERT_EQ(call.Write(account, Text("secret")), QString());
    CREDENTIALW* found = nullptr;
    ASSERT_TRUE(CredReadW(Wide(Text("Quellbox/") + account), CRED_TYPE_GENERIC, 0, &found));
    EXPECT_EQ(found->Persist, static_cast<DWORD>(CRED_PERSIST_LOCAL_MACHINE));
    EXPECT_EQ(found->CredentialBlobSize, 12U);
    CredFree(found);
    EXPECT_EQ(call.Remove(account), QString());
    EXPECT_FALSE(CredReadW(Wide(Text("Quellbox/") + account), CRED_TYPE_GENERIC, 0, &found));
}

TEST(WindowsPasswordStore, PasswordOf1280CharactersIsTheLongest) {
    const auto store = MakePasswordStore();
    PasswordStoreCaller call(*store);
    const QString account = Text("smtp:quellbox-test@mail.example:26");
    const QString longest(1280, QLatin1Char('x'));
    EXPECT_EQ(call.Write(account, longest).toStdString(), "");
    const QString error = call.Write(account, longest + QLatin1Char('x'));
    EXPECT_TRUE(error.startsWith(Text("The password store cannot be used: "))) << error.toStdString();
    EXPECT_EQ(call.Read(account).password, longest);
    EXPECT_EQ(call.Remove(account), QString());
}

#else

INSTANTIATE_TEST_SUITE_P(All, PasswordStoreRules, testing::Values(memoryStore));

#endif

class MemoryPasswordStoreTest : public testing::Test {
protected:
    using Fault = MemoryPasswordStore::Fault;

    MemoryPasswordStore store_;
    PasswordStoreCaller call_{store_};
    const QString account_ = Text("smtp:joe@mail.example:587");
};

TEST_F(MemoryPasswordStoreTest, FaultsFailEveryCallInWordsUntilTheyAreOver) {
    store_.Keep(account_, Text("secret"));
    for (const Fault fault : {Fault::Locked, Fault::Refused, Fault::Missing}) {
        store_.SetFault(fault);
        const QString error = MemoryPasswordStore::ErrorOf(fault);
        EXPECT_FALSE(error.isEmpty());
        const PasswordAnswer answer = call_.Read(account_);
        EXPECT_EQ(answer.password, std::nullopt);
        EXPECT_EQ(answer.error, error);
        EXPECT_EQ(call_.Write(account_, Text("other")), error);
        EXPECT_EQ(call_.Remove(account_), error);
    }
    store_.SetFault(Fault::None);
    EXPECT_EQ(call_.Read(account_).password, Text("secret"));
}

TEST_F(MemoryPasswordStoreTest, SlowStoreAnswersWhenItIsReleased) {
    store_.Keep(account_, Text("secret"));
    store_.Hold();
    QObject context;
    QStringList answers;
    const auto note = [&answers](const PasswordAnswer& answer) { answers += answer.password.value_or(Text("none")); };
    store_.Read(account_, context, note);
    store_.Remove(account_, context, note);
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, QStringList());
    EXPECT_EQ(store_.WaitingCount(), 2U);
    EXPECT_EQ(store_.Kept(account_), Text("secret"));
    store_.Release();
    EXPECT_EQ(store_.Kept(account_), std::nullopt);
    EXPECT_TRUE(RunUntil([&answers] { return answers.size() == 2; }));
    EXPECT_EQ(answers, QStringList({Text("secret"), Text("none")}));
}

TEST_F(MemoryPasswordStoreTest, SlowStoreDoesWhatWasWantedByWhoHasDied) {
    store_.Hold();
    bool isTold = false;
    {
        QObject context;
        store_.Write(account_, Text("secret"), context, [&isTold](const PasswordAnswer&) { isTold = true; });
    }
    store_.Release();
    QCoreApplication::processEvents();
    EXPECT_EQ(store_.Kept(account_), Text("secret"));
    EXPECT_FALSE(isTold);
}

TEST_F(MemoryPasswordStoreTest, CallsAreToldWithoutPasswords) {
    call_.Write(account_, Text("secret"));
    call_.Read(account_);
    EXPECT_EQ(store_.Calls().join(QLatin1Char('|')), Text("write ") + account_ + Text("|read ") + account_);
}

} // namespace

} // namespace quellbox
