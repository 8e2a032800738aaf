#include "console/Choices.h"
#include "console/Command.h"
#include "console/TableWriter.h"
#include "console/WhitelistLock.h"
#include "whitelist/WhitelistMatcher.h"
#include "whitelist/WhitelistNotes.h"
#include "whitelist/WhitelistRules.h"
#include "whitelist/WhitelistStore.h"

#include <QCoreApplication>

#include <algorithm>

namespace quellbox {

namespace {

TableColumns EntryColumns(bool withResult) {
    TableColumns columns{{QStringLiteral("entry"), QCoreApplication::translate("quellbox", "Whitelist entry")}};
    if (withResult) {
        columns.push_back({QStringLiteral("result"), QCoreApplication::translate("quellbox", "Result")});
    }
    return columns;
}

ExitCode PrintEntries(Session& session, OutputForm form) {
    TableWriter table(session, form, EntryColumns(false));
    for (const QString& entry : LoadWhitelist(session.Ports().store)) {
        table.Add({entry});
    }
    return ExitCode::Done;
}

/// Stores a list that was changed, and prints what has come and gone.
void Store(Session& session, OutputForm form, const QStringList& before, const QStringList& entries) {
    SettingsStore& store = session.Ports().store;
    const QStringList leftOut = SaveWhitelist(store, entries);
    NoteWhitelistChanges(session.History(), store, session.Archive(), before);
    for (const QString& entry : leftOut) {
        session.Tell(QCoreApplication::translate("quellbox", "The settings of this system hold only one of several "
                                                             "entries that differ in upper and lower case only; this "
                                                             "one is left out: %1")
                         .arg(entry));
    }
    const QStringList now = LoadWhitelist(store);
    TableWriter table(session, form, EntryColumns(true));
    for (const QString& entry : before) {
        if (!now.contains(entry)) {
            table.Add({entry, QStringLiteral("removed")});
        }
    }
    for (const QString& entry : now) {
        if (!before.contains(entry)) {
            table.Add({entry, QStringLiteral("added")});
        }
    }
}

ExitCode Add(Session& session, OutputForm form, const QString& text, bool mayReplace) {
    const bool hasBlanks = std::any_of(text.begin(), text.end(),
                                       [](QChar character) { return character.isSpace() || !character.isPrint(); });
    if (!IsValidEntry(text) || hasBlanks) {
        throw UsageError(QCoreApplication::translate("quellbox", "Invalid email address specified") +
                         QStringLiteral(": ") + text);
    }
    const WhitelistLock lock(session);
    const QStringList before = LoadWhitelist(session.Ports().store);
    Whitelist whitelist(before);
    QString question;
    const AddResult added = whitelist.Add(text, [&](const QString& domain) {
        question = DomainQuestion(domain);
        return mayReplace;
    });
    if (added.outcome == AddResult::Outcome::Refused) {
        session.Tell(question.simplified());
        throw CommandError(ExitCode::SomeFailed,
                           QCoreApplication::translate("quellbox", "Nothing was changed. To agree, give --replace."));
    }
    if (added.outcome == AddResult::Outcome::Added) {
        Store(session, form, before, whitelist.Entries());
    }
    return ExitCode::Done;
}

ExitCode Remove(Session& session, OutputForm form, const QString& entry) {
    const WhitelistLock lock(session);
    const QStringList before = LoadWhitelist(session.Ports().store);
    Whitelist whitelist(before);
    const qsizetype index = before.contains(entry) ? before.indexOf(entry) : before.indexOf(entry.toLower());
    if (index < 0) {
        throw CommandError(ExitCode::SomeFailed,
                           QCoreApplication::translate("quellbox", "\"%1\" is not on the whitelist.").arg(entry));
    }
    whitelist.Remove(static_cast<int>(index));
    Store(session, form, before, whitelist.Entries());
    return ExitCode::Done;
}

ExitCode Test(Session& session, OutputForm form, const QString& sender) {
    const WhitelistMatcher matcher(LoadWhitelist(session.Ports().store));
    const bool isTolerated = matcher.TolerableSender(sender.toLower());
    TableWriter table(session, form,
                      {{QStringLiteral("sender"), QCoreApplication::translate("quellbox", "Sender")},
                       {QStringLiteral("result"), QCoreApplication::translate("quellbox", "Result")}});
    table.Add({sender, isTolerated ? QStringLiteral("tolerated") : QStringLiteral("not tolerated")});
    return isTolerated ? ExitCode::Done : ExitCode::SomeFailed;
}

} // namespace

void AddTolerateOptions(QCommandLineParser& parser) {
    parser.addOption({QStringLiteral("replace"),
                      QCoreApplication::translate("quellbox", "Lets a domain take the place of its addresses.")});
}

ExitCode RunTolerate(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 1, 2);
    const OutputForm form = ReadForm(parser);
    const QString verb = parser.positionalArguments().first();
    if (parser.isSet(QStringLiteral("replace")) && verb != QLatin1String("add")) {
        throw UsageError(QCoreApplication::translate("quellbox", "--replace belongs to add."));
    }
    if (verb == QLatin1String("list")) {
        RequireArguments(parser, 1, 1);
        return PrintEntries(session, form);
    }
    RequireArguments(parser, 2, 2);
    const QString text = parser.positionalArguments().last();
    if (verb == QLatin1String("add")) {
        return Add(session, form, text.trimmed(), parser.isSet(QStringLiteral("replace")));
    }
    if (verb == QLatin1String("remove")) {
        return Remove(session, form, text);
    }
    if (verb == QLatin1String("test")) {
        return Test(session, form, text);
    }
    throw UsageError(
        QCoreApplication::translate("quellbox", "\"%1\" is none of list, add, remove and test.").arg(verb));
}

} // namespace quellbox
