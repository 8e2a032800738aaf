#include "console/ArchiveRows.h"
#include "console/Command.h"
#include "console/ListWriter.h"
#include "messages/MessageListModel.h"
#include "messages/SortState.h"
#include "settings/ChosenProfile.h"
#include "whitelist/WhitelistStore.h"

#include <QCoreApplication>

#include <limits>

namespace quellbox {

namespace {

const QStringList& SortColumns() {
    static const QStringList names{QStringLiteral("date"),    QStringLiteral("to"),   QStringLiteral("from"),
                                   QStringLiteral("subject"), QStringLiteral("size"), QStringLiteral("bytes"),
                                   QStringLiteral("scl")};
    return names;
}

/// The column that the option names. Throws UsageError.
Column SortColumnOf(const QString& name) {
    const qsizetype column = SortColumns().indexOf(name.toLower());
    if (column < 0 || column == ColumnBytes) {
        throw UsageError(QCoreApplication::translate("quellbox", "--sort: there is no column \"%1\".").arg(name));
    }
    return static_cast<Column>(column);
}

void PrintSorted(Session& session, std::vector<MessageRow> rows, const SortState& sorting, int limit,
                 ListWriter& writer) {
    MessageListModel model;
    model.SetRatesByNumber(ChosenProfile(session.State()).RatesByNumber());
    model.Append(std::move(rows));
    model.sort(sorting.SortKey(), sorting.order);
    for (int row = 0; row < std::min(limit, model.Count()) && !session.HasOutputEnded(); ++row) {
        writer.Add(model.Row(row));
    }
}

/// As a click on the head of the column sorts it.
SortState ReadSorting(const QCommandLineParser& parser) {
    SortState sorting;
    sorting.SortColumn = -1;
    sorting.Click(SortColumnOf(parser.value(QStringLiteral("sort"))));
    if (parser.isSet(QStringLiteral("reverse"))) {
        sorting.Click(sorting.SortColumn);
    }
    return sorting;
}

} // namespace

void AddListOptions(QCommandLineParser& parser) {
    AddChoiceOptions(parser);
    parser.addOptions(
        {{QStringLiteral("sort"),
          QCoreApplication::translate("quellbox", "Sort by a column (date, to, from, subject, size, scl) as the window "
                                                  "does. Without it the messages come in order of arrival."),
          QStringLiteral("COLUMN")},
         {QStringLiteral("reverse"), QCoreApplication::translate("quellbox", "Sort the other way round.")},
         {QStringLiteral("limit"), QCoreApplication::translate("quellbox", "Print no more than that many."),
          QStringLiteral("N")}});
    AddListFormOptions(parser);
}

ExitCode RunList(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 0, 0);
    const MessageChoice choice = ReadChoice(session, parser);
    const int most = std::numeric_limits<int>::max();
    const int limit =
        parser.isSet(QStringLiteral("limit")) ? ReadNumber(parser, QStringLiteral("limit"), 0, most) : most;
    ListWriter writer(session, parser);
    if (parser.isSet(QStringLiteral("sort"))) {
        PrintSorted(session, RowsOf(session, choice), ReadSorting(parser), limit, writer);
        return ExitCode::Done;
    }
    if (parser.isSet(QStringLiteral("reverse"))) {
        throw UsageError(QCoreApplication::translate("quellbox", "--reverse needs --sort."));
    }
    Progress progress;
    if (IsOutputTerminal()) {
        progress.Hide(); // the rows show how far it is
    }
    int printed = 0;
    ForEachRow(
        session, choice,
        [&](const ReadRow& row) {
            if (printed < limit) {
                writer.Add(row.row);
                ++printed;
            }
            return printed < limit;
        },
        std::move(progress));
    return ExitCode::Done;
}

} // namespace quellbox
