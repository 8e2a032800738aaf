#include "history/HistoryTable.h"

#include "messages/TableFile.h"
#include "tests/history/JournalFile.h"

using namespace quellbox;

namespace {

std::shared_ptr<const std::vector<HistoryLine>> OneLine() {
    HistoryLine line;
    line.facts = {HistoryAction::Delete, 1'763'800'000'000, QStringLiteral("Jo"), QStringLiteral("pc"),
                  QStringLiteral("/archive/")};
    line.entry.file = QStringLiteral("a.eml");
    line.entry.subject = QStringLiteral("=1+1");
    line.entry.size = 42;
    return std::make_shared<const std::vector<HistoryLine>>(1, line);
}

TEST(HistoryTable, EachRowHasACellForEachColumn) {
    const NextRow next = CellsOf(OneLine());
    QStringList cells;
    ASSERT_TRUE(next(cells));
    EXPECT_EQ(static_cast<size_t>(cells.size()), HistoryTableColumns().size());
    EXPECT_FALSE(next(cells));
}

TEST(HistoryTable, IsWrittenForSpreadsheetsAndForPrograms) {
    const QTemporaryDir folder;
    const auto read = [&folder](const char* name) {
        const QString path = folder.filePath(QLatin1String(name));
        WriteTable(path, HistoryTableColumns(), CellsOf(OneLine()));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    const QByteArray csv = read("h.csv");
    EXPECT_TRUE(csv.contains("'=1+1")) << "harmless";
    EXPECT_TRUE(csv.contains(",42,"));
    const QByteArray json = read("h.jsonl");
    EXPECT_TRUE(json.contains("\"subject\":\"=1+1\""));
    EXPECT_TRUE(json.contains("\"size\":42"));
    EXPECT_TRUE(json.contains("\"file\":\"a.eml\""));
}

TEST(HistoryTable, RatingsAreNumbersWhereTheyAreSome) {
    const QTemporaryDir folder;
    auto lines = std::make_shared<std::vector<HistoryLine>>(3);
    (*lines)[0].entry.rating = QStringLiteral("-1.30");
    (*lines)[1].entry.rating = QStringLiteral("7 53.21");
    const auto read = [&](const char* name, bool ratesByNumber) {
        const QString path = folder.filePath(QLatin1String(name));
        WriteTable(path, HistoryTableColumns(ratesByNumber), CellsOf(lines));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    const QByteArray numbers = read("numbers.jsonl", true);
    EXPECT_TRUE(numbers.contains("\"scl\":-1.30,"));
    EXPECT_TRUE(numbers.contains("\"scl\":\"7 53.21\",")) << "of another server";
    EXPECT_TRUE(numbers.contains("\"scl\":null,"));
    EXPECT_TRUE(read("numbers.csv", true).contains(",-1.30,"));
    const QByteArray texts = read("texts.jsonl", false);
    EXPECT_TRUE(texts.contains("\"scl\":\"-1.30\","));
    EXPECT_TRUE(texts.contains("\"scl\":\"\","));
    EXPECT_TRUE(read("texts.csv", false).contains(",\"-1.30\","));
}

TEST(HistoryTable, AnUnknownSizeIsNone) {
    auto lines = std::make_shared<std::vector<HistoryLine>>(1);
    QStringList cells;
    ASSERT_TRUE(CellsOf(lines)(cells));
    EXPECT_TRUE(cells[8].isEmpty());
}

using HistoryLines = JournalTest;

TEST_F(HistoryLines, AreAskedForInStepsAndStayInTheirOrder) {
    constexpr int count = 2'001; // two steps and one more
    QStringList files;
    for (int file = 0; file < count; ++file) {
        files += QString::number(file);
    }
    Open();
    Act(HistoryAction::Delete, files);
    ASSERT_TRUE(RunUntil(
        [this] { return Answer([](JournalDatabase& database) { return database.Find({}).size(); }) == count; }));
    const auto lines = Answer([](JournalDatabase& database) { return LinesOf(database, {}); });
    ASSERT_EQ(lines.size(), static_cast<size_t>(count));
    for (size_t line = 1; line < lines.size(); ++line) {
        ASSERT_LT(lines[line].id, lines[line - 1].id) << line;
    }
}

TEST_F(HistoryLines, AreNoMoreThanAskedForAndThoseTheNewest) {
    Open();
    Act(HistoryAction::Delete, {QStringLiteral("a")});
    Act(HistoryAction::Unblock, {QStringLiteral("b")});
    Act(HistoryAction::Unblock, {QStringLiteral("c")});
    ASSERT_TRUE(RunUntil([this] { return Lines().size() == 3; }));
    const auto files = [this](const HistoryFilter& filter, size_t most) {
        QStringList found;
        for (const HistoryLine& line :
             Answer([&](JournalDatabase& database) { return LinesOf(database, filter, most); })) {
            found += line.entry.file;
        }
        return found.join(QLatin1Char(' ')).toStdString();
    };
    EXPECT_EQ(files({}, 0), "");
    EXPECT_EQ(files({}, 2), "c b");
    EXPECT_EQ(files({}, 3), "c b a");
    EXPECT_EQ(files({}, 4), "c b a");
    HistoryFilter deleted;
    deleted.action = HistoryAction::Delete;
    EXPECT_EQ(files(deleted, 2), "a");
}

} // namespace
