#include "tests/dialogs/OptionsTest.h"

#include <QComboBox>

using namespace quellbox;

namespace {

class DeliveryOptions : public Options {
protected:
    QComboBox* Way() const { return Find<QComboBox>("cboDelivery"); }
    QLineEdit* Field(const char* name) const { return Find<QLineEdit>(name); }
    QString Trouble() const { return Find<QLabel>("lblDeliveryTrouble")->text(); }

    void Choose(const char* box, const char* key) const {
        auto* choice = Find<QComboBox>(box);
        choice->setCurrentIndex(choice->findData(QLatin1String(key)));
    }

    static void Type(QLineEdit* field, const char* text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, QLatin1String(text));
    }

    void Ok() const { Click(Find<QPushButton>("cmdOK")); }
};

} // namespace

TEST_F(DeliveryOptions, ThePickupDirectoryIsTheWayUnlessAnotherIsChosen) {
    Open(6);
    EXPECT_EQ(Way()->currentData().toString(), QStringLiteral("pickup"));
    EXPECT_FALSE(Field("txtSmtpHost")->isVisible());
    EXPECT_FALSE(Field("txtDeliveryCommand")->isVisible());
    Ok();
    EXPECT_EQ(state.Delivery, QStringLiteral("pickup"));
    EXPECT_TRUE(passwords.isEmpty());
}

TEST_F(DeliveryOptions, AMailServerIsTakenOverWithItsPassword) {
    Open(6);
    Choose("cboDelivery", "smtp");
    ASSERT_TRUE(Field("txtSmtpHost")->isVisible());
    Type(Field("txtSmtpHost"), " mail.example.org ");
    Type(Field("txtSmtpPort"), "587");
    Type(Field("txtSmtpUser"), "joe");
    Type(Field("txtSmtpPassword"), "secret");
    EXPECT_EQ(Field("txtSmtpPassword")->echoMode(), QLineEdit::Password);
    Ok();
    EXPECT_EQ(state.Delivery, QStringLiteral("smtp"));
    EXPECT_EQ(state.SmtpHost, QStringLiteral("mail.example.org"));
    EXPECT_EQ(state.SmtpPort, 587);
    EXPECT_EQ(state.SmtpSecurity, QStringLiteral("starttls"));
    EXPECT_EQ(state.SmtpUser, QStringLiteral("joe"));
    EXPECT_EQ(passwords, QStringList{QStringLiteral("secret")});
    EXPECT_EQ(SmtpAccount(state), QStringLiteral("smtp:joe@mail.example.org:587"));
}

TEST_F(DeliveryOptions, APasswordThatWasLeftAloneStays) {
    state.Delivery = QStringLiteral("smtp");
    state.SmtpHost = QStringLiteral("mail.example.org");
    Open(6);
    EXPECT_TRUE(Field("txtSmtpPassword")->text().isEmpty());
    Ok();
    EXPECT_TRUE(passwords.isEmpty());
}

TEST_F(DeliveryOptions, AMailServerNeedsAName) {
    Open(6);
    Choose("cboDelivery", "smtp");
    Find<QTabWidget>("tbsOptions")->setCurrentIndex(0);
    Ok();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Find<QTabWidget>("tbsOptions")->currentIndex(), 6);
    EXPECT_EQ(Trouble(), QStringLiteral("The name of the mail server is needed."));
    EXPECT_TRUE(Field("txtSmtpHost")->hasFocus());
    EXPECT_EQ(state.Delivery, QString());
    Choose("cboDelivery", "pickup");
    EXPECT_EQ(Trouble(), QString());
}

TEST_F(DeliveryOptions, NobodyLogsInWithoutASecuredConnection) {
    Open(6);
    Choose("cboDelivery", "smtp");
    Type(Field("txtSmtpHost"), "mail.example.org");
    Type(Field("txtSmtpUser"), "joe");
    Choose("cboSmtpSecurity", "none");
    Ok();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Trouble(), QStringLiteral("A password is sent through a secured connection only."));
}

TEST_F(DeliveryOptions, TheReplayDirectoryIsTheOneThatIsSetAsThePickupDirectory) {
    Open(6);
    auto* folder = Find<QLabel>("lblReplay");
    EXPECT_FALSE(folder->isVisible());
    Choose("cboDelivery", "replay");
    EXPECT_TRUE(folder->isVisible());
    EXPECT_FALSE(Field("txtSmtpHost")->isVisible());
    EXPECT_FALSE(Field("txtDeliveryCommand")->isVisible());
    EXPECT_TRUE(folder->text().endsWith(QStringLiteral(": /pickup/"))) << folder->text().toStdString();
    EXPECT_EQ(Way()->accessibleDescription(), folder->text());
    Find<QTabWidget>("tbsOptions")->setCurrentIndex(1);
    Click(Find<QPushButton>("btnPickup"));
    EXPECT_TRUE(folder->text().endsWith(QStringLiteral(": /new&1/"))) << folder->text().toStdString();
    Ok();
    EXPECT_EQ(state.Delivery, QStringLiteral("replay"));
    Reopen();
    EXPECT_EQ(Way()->currentData().toString(), QStringLiteral("replay"));
    Choose("cboDelivery", "pickup");
    EXPECT_EQ(Way()->accessibleDescription(), QString());
}

TEST_F(DeliveryOptions, APickupDirectoryOfAnExchangeServerIsNotTakenForItsReplayDirectory) {
    state.PickupDir = QStringLiteral("//mx/TransportRoles/PickUp/");
    Open(6);
    Choose("cboDelivery", "replay");
    Ok();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(Trouble().contains(QStringLiteral("Replay directory"))) << Trouble().toStdString();
    Choose("cboDelivery", "pickup");
    Ok();
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(DeliveryOptions, ACommandHasToNameTheRecipients) {
    state.DeliveryCommand = QStringLiteral("sendmail -i");
    Open(6);
    Choose("cboDelivery", "command");
    Ok();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(Trouble().isEmpty());
    Type(Field("txtDeliveryCommand"), "sendmail -i -f SENDER -- RECIPIENT...");
    Ok();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(state.DeliveryCommand, QStringLiteral("sendmail -i -f SENDER -- RECIPIENT..."));
}

TEST_F(DeliveryOptions, KeysAloneReachEveryField) {
    Open(6);
    Choose("cboDelivery", "smtp");
    for (const auto& [key, name] : {std::pair(Qt::Key_M, "txtSmtpHost"),
                                    {Qt::Key_O, "txtSmtpPort"},
                                    {Qt::Key_C, "cboSmtpSecurity"},
                                    {Qt::Key_U, "txtSmtpUser"},
                                    {Qt::Key_P, "txtSmtpPassword"},
                                    {Qt::Key_L, "cboDelivery"}}) {
        Press(key, Qt::AltModifier);
        EXPECT_TRUE(Find<QWidget>(name)->hasFocus()) << name;
    }
}
