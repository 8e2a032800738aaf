#pragma once

#include "console/Session.h"

#include <QCommandLineParser>
#include <QStringList>

#include <vector>

namespace quellbox {

/// A subcommand of the program. Its texts are not yet translated.
struct Command {
    const char* name;
    const char* arguments; ///< what follows the name besides options; may be empty
    const char* summary;   ///< one sentence
    const char* example;   ///< a whole command line
    void (*addOptions)(QCommandLineParser& parser);
    ExitCode (*run)(Session& session, const QCommandLineParser& parser);
};

/// All of them, in the order in which they are listed.
const std::vector<Command>& Commands();

/// The one with that name, or null.
const Command* FindCommand(const QString& name);

void AddListOptions(QCommandLineParser& parser);
ExitCode RunList(Session& session, const QCommandLineParser& parser);

void AddShowOptions(QCommandLineParser& parser);
ExitCode RunShow(Session& session, const QCommandLineParser& parser);

void AddDisposalOptions(QCommandLineParser& parser);
ExitCode RunUnblock(Session& session, const QCommandLineParser& parser);
ExitCode RunDelete(Session& session, const QCommandLineParser& parser);

void AddTolerateOptions(QCommandLineParser& parser);
ExitCode RunTolerate(Session& session, const QCommandLineParser& parser);

/// The option to print messages and do nothing with them, and how they are printed then.
void AddDryRunOption(QCommandLineParser& parser);
bool ReadDryRun(const QCommandLineParser& parser);

void AddDeliverOptions(QCommandLineParser& parser);
ExitCode RunDeliverTolerated(Session& session, const QCommandLineParser& parser);

void AddCleanseOptions(QCommandLineParser& parser);
ExitCode RunCleanse(Session& session, const QCommandLineParser& parser);

void AddStatsOptions(QCommandLineParser& parser);
ExitCode RunStats(Session& session, const QCommandLineParser& parser);

void AddHistoryOptions(QCommandLineParser& parser);
ExitCode RunHistory(Session& session, const QCommandLineParser& parser);

void AddUndoOptions(QCommandLineParser& parser);
ExitCode RunUndo(Session& session, const QCommandLineParser& parser);

void AddPickupTestOptions(QCommandLineParser& parser);
ExitCode RunPickupTest(Session& session, const QCommandLineParser& parser);

void AddWatchOptions(QCommandLineParser& parser);
ExitCode RunWatch(Session& session, const QCommandLineParser& parser);

} // namespace quellbox
