#include "console/ArchiveRows.h"
#include "console/Command.h"
#include "console/TableWriter.h"
#include "messages/ArchiveStatistics.h"

#include <QCoreApplication>

#include <array>
#include <limits>

namespace quellbox {

namespace {

struct NamedGrouping {
    const char* name;
    StatisticsBy by;
};

constexpr std::array<NamedGrouping, 5> groupings{{{"day", StatisticsBy::Day},
                                                  {"scl", StatisticsBy::Rating},
                                                  {"domain", StatisticsBy::Domain},
                                                  {"to", StatisticsBy::Recipient},
                                                  {"subject", StatisticsBy::Subject}}};

// What is printed without a choice, and always was; scripts may read it.
constexpr size_t chosenByDefault = 4;

QStringList GroupingNames() {
    QStringList names;
    for (const NamedGrouping& known : groupings) {
        names.append(QLatin1String(known.name));
    }
    return names;
}

/// What the options choose. Throws UsageError.
std::vector<NamedGrouping> ReadGroupings(const QCommandLineParser& parser) {
    const QStringList wanted = parser.values(QStringLiteral("by"));
    for (const QString& name : wanted) {
        if (!GroupingNames().contains(name)) {
            throw UsageError(QCoreApplication::translate("quellbox", "--%1: \"%2\" is none of %3.")
                                 .arg(QStringLiteral("by"), name, GroupingNames().join(QStringLiteral(", "))));
        }
    }
    std::vector<NamedGrouping> chosen;
    if (wanted.isEmpty()) {
        return {groupings.begin(), groupings.begin() + chosenByDefault};
    }
    for (const NamedGrouping& known : groupings) {
        if (wanted.contains(QLatin1String(known.name))) {
            chosen.push_back(known);
        }
    }
    return chosen;
}

} // namespace

void AddStatsOptions(QCommandLineParser& parser) {
    AddChoiceOptions(parser);
    parser.addOptions(
        {{QStringLiteral("by"),
          QCoreApplication::translate("quellbox", "Count by that: %1. May be given several times; without "
                                                  "it by all but subjects.")
              .arg(GroupingNames().join(QStringLiteral(", "))),
          QStringLiteral("GROUP")},
         {QStringLiteral("top"),
          QCoreApplication::translate("quellbox", "Print no more than that many of each: the latest days, "
                                                  "and of all else the most frequent."),
          QStringLiteral("N")}});
}

ExitCode RunStats(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 0, 0);
    const OutputForm form = ReadForm(parser);
    const std::vector<NamedGrouping> chosen = ReadGroupings(parser);
    const QString option = QStringLiteral("top");
    const size_t top = parser.isSet(option)
                           ? static_cast<size_t>(ReadNumber(parser, option, 1, std::numeric_limits<int>::max()))
                           : ArchiveStatistics::all;
    std::vector<StatisticsBy> by;
    for (const NamedGrouping& known : chosen) {
        by.push_back(known.by);
    }
    ArchiveStatistics statistics(by);
    ForEachRow(session, ReadChoice(session, parser), [&statistics](const ReadRow& row) {
        statistics.Add(row.row);
        return true;
    });
    TableWriter table(session, form,
                      {{QStringLiteral("group"), QCoreApplication::translate("quellbox", "Group")},
                       {QStringLiteral("value"), QCoreApplication::translate("quellbox", "Value")},
                       {QStringLiteral("count"), QCoreApplication::translate("quellbox", "Messages"), true},
                       {QStringLiteral("bytes"), QCoreApplication::translate("quellbox", "Bytes"), true}});
    for (const NamedGrouping& known : chosen) {
        for (const StatisticsGroup& group : statistics.Groups(known.by, top)) {
            table.Add(
                {QLatin1String(known.name), group.value, QString::number(group.count), QString::number(group.bytes)});
        }
    }
    return ExitCode::Done;
}

} // namespace quellbox
