#include "console/Upkeep.h"

#include "archive/KeptExpiry.h"
#include "console/Aside.h"
#include "history/JournalRecovery.h"
#include "messages/InterruptedSending.h"

#include <algorithm>

namespace quellbox {

namespace {

void DeleteExpired(Session& session) {
    const ConsolePorts& ports = session.Ports();
    KeptExpiry expiry(ports.files, ports.pool);
    session.Await(
        [&](const std::function<void()>& done) {
            QObject::connect(&expiry, &KeptExpiry::Ended, &session,
                             [&session, done](const std::vector<FileFailure>& failures) {
                                 session.Tell(failures);
                                 done();
                             });
            expiry.Start(session.Archive(), ports.clock.Now().date());
        },
        [&expiry] { expiry.GiveUp(); });
}

} // namespace

void CompleteHistory(Session& session) {
    const ConsolePorts& ports = session.Ports();
    const AppState& state = session.State();
    // As long as deleted messages are kept, it is known how to put them back.
    if (state.HistoryDays > 0) {
        const int days = std::max(state.HistoryDays, state.KeepDeletedDays);
        session.History().RemoveBefore(ports.clock.Now().date().addDays(-days));
    }
    JournalRecovery recovery(ports.files, ports.pool, session.History());
    session.Await([&](const std::function<void()>& done) {
        QObject::connect(&recovery, &JournalRecovery::Ended, &session, [done](int) { done(); });
        QObject::connect(&session.History(), &Journal::Troubled, &recovery, done); // there will be no end then
        recovery.Start();
    });
}

void KeepUp(Session& session) {
    if (!session.IsInterrupted()) {
        DeleteExpired(session);
    }
    if (!session.IsInterrupted()) {
        CompleteHistory(session);
    }
    BringBackLeftBehind(session);
}

void BringBackLeftBehind(Session& session) {
    if (session.IsInterrupted()) {
        return;
    }
    const ConsolePorts& ports = session.Ports();
    session.Tell(CallAside(session, [&files = ports.files, archive = session.Archive(), now = ports.clock.Now()] {
        return BringBackInterrupted(files, archive, now);
    }));
}

} // namespace quellbox
