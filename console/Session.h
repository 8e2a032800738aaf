#pragma once

#include "console/ExitCode.h"
#include "delivery/AwaitedPassword.h"
#include "delivery/ReleaseWay.h"
#include "delivery/Transmitter.h"
#include "history/Journal.h"
#include "messages/FileFailure.h"
#include "platform/Clock.h"
#include "platform/Console.h"
#include "platform/FileSystem.h"
#include "platform/PasswordStore.h"
#include "platform/SettingsStore.h"
#include "platform/WorkPool.h"
#include "settings/AppState.h"
#include "settings/ProgramInfo.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

/// What a run of the program needs of the outside.
struct ConsolePorts {
    FileSystem& files;
    SettingsStore& store;
    const Clock& clock;
    WorkPool& pool;
    PasswordStore& passwords;
    Interrupts& interrupts;
    ProgramInfo program; ///< whose settings and history are used
    QString account;     ///< of the user, for the history
};

/// One run of the program: what its command is given, and what it tells.
class Session : public QObject {
    Q_OBJECT

public:
    /// Reads the settings. An `archive` or `pickup` that is not empty takes the place of the one in the settings.
    Session(const ConsolePorts& ports, const QString& archive, const QString& pickup);
    ~Session() override;

    const ConsolePorts& Ports() const { return ports_; }
    AppState& State() { return state_; }
    const Folder& Archive() const { return state_.ArchiveDir; }

    /// Throws UnreachableError when neither the settings nor the user name an archive: without one it is the folder of
    /// the program, which shall not be dealt with.
    void RequireArchiveSetUp() const;

    /// Throws UnreachableError when messages are to go into the pickup directory and there is none.
    void RequirePickup();

    /// The history, which is opened when it is first asked for. What is wrong with it is told once.
    Journal& History();

    /// Whether something was wrong with it.
    bool HistoryFailed() const { return historyFailed_; }

    /// The way on which one action unblocks messages; null where they go into the pickup directory.
    std::shared_ptr<ReleaseWay> NewWay();

    /// Who transmits a message that is in no archive; null as with NewWay().
    std::unique_ptr<Transmitter> NewTransmitter();

    /// Tells the user a line, beside the output.
    void Tell(const QString& text);

    /// Names each message that failed, with its reason.
    void Tell(const std::vector<FileFailure>& failures);

    /// Whether the user wants the program to end.
    bool IsInterrupted() const { return ports_.interrupts.Came(); }

    /// Begins something by `start`, and waits until it calls what it is given. When the user wants the program to end,
    /// or nobody reads the output any more, `cancel` is called, and has to see to it that the end comes soon. Without
    /// one nobody waits any longer then; so `done` may be called later, but nothing that belongs to the caller be used.
    void Await(const std::function<void(std::function<void()> done)>& start, const std::function<void()>& cancel = {});

    /// Nothing can be printed any more, and what only prints is to end. That is no error when nobody reads it.
    void EndOutput(bool isClosed);
    bool HasOutputEnded() const { return outputHasEnded_; }

    /// Whether it was an error.
    bool HasOutputFailed() const { return outputHasFailed_; }

Q_SIGNALS:
    void OutputEnded();

private:
    ConsolePorts ports_;
    AppState state_;
    std::unique_ptr<Journal> journal_;
    std::shared_ptr<const AwaitedPassword> password_;
    std::weak_ptr<ReleaseWay> way_;
    bool historyFailed_ = false;
    bool outputHasEnded_ = false;
    bool outputHasFailed_ = false;
};

} // namespace quellbox
