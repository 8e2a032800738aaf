#include "console/Aside.h"
#include "console/Choices.h"
#include "console/Command.h"
#include "console/TableWriter.h"
#include "delivery/ChosenDelivery.h"
#include "dialogs/PickupTest.h"
#include "dialogs/PickupWatch.h"

#include <QCoreApplication>
#include <QLocale>

namespace quellbox {

namespace {

constexpr int longestWait = 86'400;

void Print(Session& session, OutputForm form, const QString& result, const QString& detail) {
    TableWriter table(session, form,
                      {{QStringLiteral("result"), QCoreApplication::translate("quellbox", "Result")},
                       {QStringLiteral("detail"), QCoreApplication::translate("quellbox", "Detail")}});
    table.Add({result, detail});
}

/// Waits until the mail server has taken the file, and prints what came of it.
ExitCode WaitForServer(Session& session, OutputForm form, const QString& path, int seconds,
                       std::shared_ptr<ActionRecord> record) {
    const ConsolePorts& ports = session.Ports();
    PickupWatch watch(ports.files, ports.pool, ports.clock);
    std::optional<PickupWatch::Outcome> outcome;
    session.Await([&](const std::function<void()>& done) {
        QObject::connect(&watch, &PickupWatch::Ended, &session, [&outcome, done](const PickupWatch::Outcome& ended) {
            outcome = ended;
            done();
        });
        watch.Start(path, session.State().PickupDir, std::move(record), seconds);
    });
    if (!outcome) {
        return ExitCode::Interrupted;
    }
    if (!outcome->isTaken) {
        throw CommandError(ExitCode::SomeFailed, outcome->text);
    }
    Print(session, form, QStringLiteral("taken"), outcome->text);
    return ExitCode::Done;
}

/// What a test on either way came to.
struct Sent {
    std::optional<QString> error;
    QString path; ///< of the file that a mail server is to take; empty where it has the message
};

Sent Send(Session& session, const std::shared_ptr<ActionRecord>& record,
          const std::shared_ptr<Transmitter>& transmitter) {
    const ConsolePorts& ports = session.Ports();
    const AppState& state = session.State();
    if (!transmitter) {
        const QString moment = GeneralDate(ports.clock.Now(), QLocale());
        return CallAside(
            session, [&files = ports.files, user = state.UserName, folder = state.PickupDir.Text(), moment, record] {
                return Sent{TryPickupTest(files, user, folder, moment, *record), PickupTestPath(folder)};
            });
    }
    const QByteArray message = TransmissionTestMessage(state.UserName, transmitter->Target(), ports.clock.Now());
    return CallAside(session, [transmitter, message, record, &interrupts = ports.interrupts] {
        Sent sent;
        sent.error = TryTransmissionTest(
            *transmitter, message, *record, [&interrupts] { return !interrupts.Came(); }, sent.path);
        return sent;
    });
}

} // namespace

void AddPickupTestOptions(QCommandLineParser& parser) {
    parser.addOption({QStringLiteral("wait"),
                      QCoreApplication::translate("quellbox", "Wait that long until the server has taken the message."),
                      QStringLiteral("SECONDS")});
}

ExitCode RunPickupTest(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 0, 0);
    const OutputForm form = ReadForm(parser);
    const QString option = QStringLiteral("wait");
    const int seconds = parser.isSet(option) ? ReadNumber(parser, option, 0, longestWait) : 0;
    session.RequirePickup();
    session.NoteChanges();
    const std::shared_ptr<Transmitter> transmitter = session.NewTransmitter();
    const QString target = transmitter ? transmitter->Target() : session.State().PickupDir.Text();
    const std::shared_ptr<ActionRecord> record = session.History().Begin({HistoryAction::PickupTest, {}, target});
    const Sent sent = Send(session, record, transmitter);
    if (sent.error) {
        throw CommandError(ExitCode::SomeFailed, *sent.error);
    }
    if (sent.path.isEmpty()) {
        Print(session, form, QStringLiteral("taken"),
              QCoreApplication::translate(
                  "quellbox", "The mail server has taken the test message. Verify postmaster mailbox now!"));
        return ExitCode::Done;
    }
    if (seconds > 0) {
        return WaitForServer(session, form, sent.path, seconds, record);
    }
    Print(session, form, QStringLiteral("sent"),
          QCoreApplication::translate("quellbox", "Testmessage send. Verify postmaster mailbox now!"));
    return ExitCode::Done;
}

} // namespace quellbox
