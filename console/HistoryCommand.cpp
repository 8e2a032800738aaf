#include "console/AskHistory.h"
#include "console/Choices.h"
#include "console/Command.h"
#include "console/TableWriter.h"
#include "history/HistoryTable.h"
#include "history/HistoryTexts.h"
#include "settings/ChosenProfile.h"

#include <QCoreApplication>

#include <limits>

namespace quellbox {

namespace {

/// The keys of what can be chosen.
template <class Values>
QStringList KeysOf(const Values& values) {
    QStringList keys;
    for (const auto value : values) {
        keys.append(KeyOf(value));
    }
    return keys;
}

/// What an option chooses among values. Throws UsageError.
template <class Value>
std::optional<Value> ReadKey(const QCommandLineParser& parser, const QString& option,
                             const std::vector<Value>& values) {
    if (!parser.isSet(option)) {
        return std::nullopt;
    }
    const QString key = parser.value(option).toLower();
    for (const Value value : values) {
        if (KeyOf(value) == key) {
            return value;
        }
    }
    throw UsageError(QCoreApplication::translate("quellbox", "--%1: \"%2\" is none of %3.")
                         .arg(option, key, KeysOf(values).join(QStringLiteral(", "))));
}

TableColumns NumberColumns() {
    return {{QStringLiteral("id"), QCoreApplication::translate("quellbox", "Entry"), true},
            {QStringLiteral("actionId"), QCoreApplication::translate("quellbox", "Number"), true}};
}

/// What the window shows, with the numbers that an undo takes.
TableColumns TextColumns() {
    TableColumns columns = NumberColumns();
    for (const HistoryColumn column : {HistoryTime, HistoryActionName, HistoryResultName, HistorySender, HistoryTo,
                                       HistoryScl, HistorySubjectText}) {
        columns.push_back({QString(), HeaderOf(column)});
    }
    return columns;
}

QStringList TextCells(const HistoryLine& line) {
    return {QString::number(line.id), QString::number(line.actionId), TimeOf(line),
            KeyOf(line.facts.action), KeyOf(line.entry.result),       CellOf(line, HistorySender),
            CellOf(line, HistoryTo),  CellOf(line, HistoryScl),       CellOf(line, HistorySubjectText)};
}

TableColumns AllColumns(bool ratesByNumber) {
    TableColumns columns = NumberColumns();
    const TableColumns others = HistoryTableColumns(ratesByNumber);
    columns.insert(columns.end(), others.begin(), others.end());
    return columns;
}

// Programs get the names that never change, whatever the language.
QStringList AllCells(const HistoryLine& line) {
    QStringList cells{QString::number(line.id), QString::number(line.actionId)};
    cells += CellsOf(line);
    cells[3] = KeyOf(line.facts.action);
    cells[4] = KeyOf(line.entry.result);
    return cells;
}

} // namespace

void AddHistoryOptions(QCommandLineParser& parser) {
    parser.addOptions(
        {{QStringLiteral("action"),
          QCoreApplication::translate("quellbox", "Only actions of that kind: %1.")
              .arg(KeysOf(HistoryActions()).join(QStringLiteral(", "))),
          QStringLiteral("ACTION")},
         {QStringLiteral("result"),
          QCoreApplication::translate("quellbox", "Only what came to that: %1.")
              .arg(KeysOf(HistoryResults()).join(QStringLiteral(", "))),
          QStringLiteral("RESULT")},
         {QStringLiteral("text"),
          QCoreApplication::translate("quellbox", "Only entries with that text somewhere in them."),
          QStringLiteral("TEXT")},
         {QStringLiteral("limit"), QCoreApplication::translate("quellbox", "Print no more than that many."),
          QStringLiteral("N")}});
}

ExitCode RunHistory(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 0, 0);
    const OutputForm form = ReadForm(parser);
    HistoryFilter filter;
    filter.action = ReadKey(parser, QStringLiteral("action"), HistoryActions());
    filter.result = ReadKey(parser, QStringLiteral("result"), HistoryResults());
    filter.text = parser.value(QStringLiteral("text"));
    const QString limit = QStringLiteral("limit");
    constexpr int mostOfAll = std::numeric_limits<int>::max();
    const int most = parser.isSet(limit) ? ReadNumber(parser, limit, 0, mostOfAll) : mostOfAll;
    TellIfNoHistory(session);
    const std::vector<HistoryLine> lines = AskHistory(session, [filter, most](JournalDatabase& database) {
        return LinesOf(database, filter, static_cast<size_t>(most));
    });
    const bool isText = form == OutputForm::Text;
    TableWriter table(session, form,
                      isText ? TextColumns() : AllColumns(ChosenProfile(session.State()).RatesByNumber()));
    for (const HistoryLine& line : lines) {
        table.Add(isText ? TextCells(line) : AllCells(line));
    }
    return ExitCode::Done;
}

} // namespace quellbox
