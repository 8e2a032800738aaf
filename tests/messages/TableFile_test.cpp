#include "messages/TableFile.h"

#include "platform/RuntimeError.h"
#include "tests/support/FaultMount.h"
#include "tests/support/RealFiles.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace quellbox {

namespace {

using namespace Qt::StringLiterals;

const QByteArray mark = "\xEF\xBB\xBF";

/// The rows of a list, one after the other.
NextRow Each(std::vector<QStringList> rows) {
    const auto left = std::make_shared<std::vector<QStringList>>(rows.rbegin(), rows.rend());
    return [left](QStringList& cells) {
        if (left->empty()) {
            return false;
        }
        cells = left->back();
        left->pop_back();
        return true;
    };
}

class TableFile : public RealFilesTest {
protected:
    QByteArray Bytes(const QString& path) const { return ReadWhole(*files_, path); }
    QByteArray Bytes(const char* name) const { return Bytes(Path(name)); }

    void Write(const char* name, std::vector<QStringList> rows, ExistingFile existing = ExistingFile::Keep) {
        WriteTable(Path(name), columns_, Each(std::move(rows)), existing);
    }

    /// The error of writing to a path.
    FileError ErrorOf(const QString& path, const NextRow& next, ExistingFile existing = ExistingFile::Keep) {
        try {
            WriteTable(path, columns_, next, existing);
        } catch (const FileError& error) {
            return error;
        }
        ADD_FAILURE() << "there was none";
        return {path, {}};
    }

    FileError ErrorOf(const char* name, ExistingFile existing = ExistingFile::Keep) {
        return ErrorOf(Path(name), Each({{u"a"_s, u"1"_s}}), existing);
    }

    TableColumns columns_{{u"subject"_s, u"Betreff"_s, false}, {u"size"_s, u"Größe"_s, true}};
};

} // namespace

TEST_F(TableFile, CsvHasAByteOrderMarkAHeaderAndCrlf) {
    Write("list.csv", {{u"Grüße"_s, u"1200"_s}, {u"a \"b\", c"_s, u"-5"_s}});
    EXPECT_EQ(Bytes("list.csv"), mark + "\"Betreff\",\"Größe\"\r\n\"Grüße\",1200\r\n\"a \"\"b\"\", c\",-5\r\n");
}

TEST_F(TableFile, JsonLinesHaveAnObjectARowAndNeitherMarkNorHeader) {
    Write("list.jsonl", {{u"Grüße"_s, u"1200"_s}, {u"a \"b\"\n"_s, u"-5"_s}});
    EXPECT_EQ(Bytes("list.jsonl"),
              "{\"subject\":\"Grüße\",\"size\":1200}\n{\"subject\":\"a \\\"b\\\"\\u000a\",\"size\":-5}\n");
}

TEST_F(TableFile, WithoutRowsThereIsStillAFile) {
    Write("list.csv", {});
    Write("list.jsonl", {});
    EXPECT_EQ(Bytes("list.csv"), mark + "\"Betreff\",\"Größe\"\r\n");
    EXPECT_EQ(Bytes("list.jsonl"), "");
    EXPECT_EQ(NamesIn(folder_.path()), QStringList({u"list.csv"_s, u"list.jsonl"_s}));
}

TEST_F(TableFile, AFormulaIsHarmlessInCsvAndItselfInJson) {
    Write("list.csv", {{u"=1+1"_s, u"1"_s}});
    Write("list.jsonl", {{u"=1+1"_s, u"1"_s}});
    EXPECT_TRUE(Bytes("list.csv").endsWith("\"'=1+1\",1\r\n"));
    EXPECT_EQ(Bytes("list.jsonl"), "{\"subject\":\"=1+1\",\"size\":1}\n");
}

TEST_F(TableFile, ANumberThatIsNoneIsAText) {
    const std::vector<QStringList> rows = {{u"a"_s, u"=2"_s}, {u"b"_s, u"1,5"_s}, {u"c"_s, QString()}, {u"d"_s}};
    Write("list.csv", rows);
    Write("list.jsonl", rows);
    EXPECT_TRUE(Bytes("list.csv").endsWith("\"a\",\"'=2\"\r\n\"b\",\"1,5\"\r\n\"c\",\r\n\"d\",\r\n"));
    EXPECT_EQ(Bytes("list.jsonl"), "{\"subject\":\"a\",\"size\":\"=2\"}\n{\"subject\":\"b\",\"size\":\"1,5\"}\n"
                                   "{\"subject\":\"c\",\"size\":null}\n{\"subject\":\"d\",\"size\":null}\n");
}

TEST_F(TableFile, LineBreaksStayInTheirCells) {
    Write("list.csv", {{u"a\r\nb\nc\rd"_s, u"1"_s}});
    EXPECT_TRUE(Bytes("list.csv").endsWith("\"a\r\nb\nc\rd\",1\r\n"));
}

TEST_F(TableFile, NulAndHalvesOfPairsLeaveAFileThatCanBeRead) {
    QString odd = u"x"_s;
    odd += QChar(u'\0');
    odd += QChar(0xD800);
    odd += u'y';
    odd += QChar(0xDC00);
    Write("list.csv", {{odd, u"1"_s}, {odd, u"2"_s}});
    Write("list.jsonl", {{odd, u"1"_s}});
    const QString shown = u"x\uFFFD\uFFFDy\uFFFD"_s;
    EXPECT_TRUE(Bytes("list.csv").endsWith("\r\n\"" + shown.toUtf8() + "\",1\r\n\"" + shown.toUtf8() + "\",2\r\n"));
    const QJsonObject row = QJsonDocument::fromJson(Bytes("list.jsonl")).object();
    EXPECT_EQ(row.value(u"subject"_s).toString(), QStringView(u"x\0\uFFFDy\uFFFD", 5).toString());
}

TEST_F(TableFile, ACellOfAMegabyteIsWhole) {
    const QString large(1'000'000, QLatin1Char('"'));
    Write("list.csv", {{large, u"1"_s}});
    Write("list.jsonl", {{large, u"1"_s}});
    EXPECT_EQ(Bytes("list.csv").size(), mark.size() + 21 + 2'000'000 + 2 + 4);
    EXPECT_EQ(QJsonDocument::fromJson(Bytes("list.jsonl")).object().value(u"subject"_s).toString(), large);
}

TEST_F(TableFile, ManyRowsAreAskedForOneByOne) {
    int given = 0;
    WriteTable(Path("list.jsonl"), columns_, [&given](QStringList& cells) {
        EXPECT_TRUE(cells.isEmpty());
        cells = {u"row"_s, QString::number(given)};
        return ++given <= 100'000;
    });
    EXPECT_EQ(given, 100'001);
    EXPECT_EQ(Bytes("list.jsonl").count('\n'), 100'000);
    EXPECT_TRUE(Bytes("list.jsonl").endsWith("{\"subject\":\"row\",\"size\":99999}\n"));
}

TEST_F(TableFile, TheEndOfTheNameSaysWhichFormInAnyCase) {
    Write("A.CSV", {});
    Write("B.JsonL", {});
    EXPECT_EQ(Bytes("A.CSV").first(3), mark);
    EXPECT_EQ(Bytes("B.JsonL"), "");
    for (const char* name : {"list", "list.txt", "list.csv.bak", "csv", "list.json"}) {
        EXPECT_EQ(ErrorOf(name).Reason(), u"The name has to end with .csv or .jsonl."_s);
    }
    EXPECT_EQ(NamesIn(folder_.path()).size(), 2);
}

TEST_F(TableFile, AnotherFileIsReplacedOnlyWhereThatIsAskedFor) {
    files_->WriteWhole(Path("list.csv"), "precious");
    const FileError error = ErrorOf("list.csv");
    EXPECT_EQ(error.Problem(), FileProblem::Exists);
    EXPECT_EQ(error.Reason(), u"There is a file of this name already."_s);
    EXPECT_EQ(Bytes("list.csv"), "precious");
    Write("list.csv", {}, ExistingFile::Replace);
    EXPECT_EQ(Bytes("list.csv"), mark + "\"Betreff\",\"Größe\"\r\n");
    EXPECT_EQ(NamesIn(folder_.path()), QStringList({u"list.csv"_s}));
}

TEST_F(TableFile, AFileThatComesMeanwhileStays) {
    const NextRow next = [this](QStringList&) {
        files_->WriteWhole(Path("list.csv"), "precious");
        return false;
    };
    EXPECT_EQ(ErrorOf(Path("list.csv"), next).Problem(), FileProblem::Exists);
    EXPECT_EQ(Bytes("list.csv"), "precious");
    EXPECT_EQ(NamesIn(folder_.path()), QStringList({u"list.csv"_s}));
}

TEST_F(TableFile, AMissingFolderIsNamed) {
    const FileError error = ErrorOf("none/list.csv");
    EXPECT_EQ(error.Problem(), FileProblem::Missing);
    EXPECT_TRUE(error.Path().endsWith(u"none"_s)) << error.Path().toStdString();
    EXPECT_EQ(error.Reason(), u"There is no such folder."_s);
}

TEST_F(TableFile, AFolderOfThatNameStays) {
    QDir(folder_.path()).mkdir(u"list.csv"_s);
    EXPECT_FALSE(ErrorOf("list.csv", ExistingFile::Replace).Reason().isEmpty());
    EXPECT_TRUE(files_->FolderExists(Path("list.csv")));
    EXPECT_TRUE(NamesIn(folder_.path()).isEmpty());
}

TEST_F(TableFile, RowsThatEndInAnErrorLeaveTheOldFileAndNothingElse) {
    files_->WriteWhole(Path("list.csv"), "precious");
    int given = 0;
    const NextRow next = [&given](QStringList& cells) {
        cells = {QString(10'000, QLatin1Char('x')), u"1"_s};
        if (++given == 100) {
            throw RuntimeError(u"no more"_s);
        }
        return true;
    };
    EXPECT_THROW(WriteTable(Path("list.csv"), columns_, next, ExistingFile::Replace), RuntimeError);
    EXPECT_EQ(Bytes("list.csv"), "precious");
    EXPECT_EQ(NamesIn(folder_.path()), QStringList({u"list.csv"_s}));
}

#ifdef __linux__

namespace {

/// Writing to a mounted folder in which calls fail.
class TableFileOnABadDisk : public TableFile {
protected:
    static constexpr int rows = 20'000;

    void SetUp() override {
        if (!mount_.IsMounted()) {
            GTEST_SKIP() << mount_.WhyNot().toStdString();
        }
        files_->WriteWhole(Target(), "precious");
    }

    QString Target() const { return mount_.Folder() + u"list.csv"_s; }

    FaultMount mount_{FaultMount::Traits()};
};

class TableFileWhereCallsFail : public TableFileOnABadDisk, public testing::WithParamInterface<const char*> {};

} // namespace

TEST_P(TableFileWhereCallsFail, TheOldFileStaysAndNothingIsLeftBehind) {
    mount_.SetRules(QByteArray(GetParam()) + "\n");
    int given = 0;
    const NextRow next = [&given](QStringList& cells) {
        cells = {QString(100, QLatin1Char('x')), u"1"_s};
        return ++given <= rows;
    };
    const FileError error = ErrorOf(Target(), next, ExistingFile::Replace);
    EXPECT_FALSE(error.Reason().isEmpty());
    EXPECT_LE(given, rows + 1);
    mount_.SetRules({});
    EXPECT_EQ(Bytes(mount_.RealFolder() + u"list.csv"_s), "precious");
    EXPECT_EQ(NamesIn(mount_.RealFolder()), QStringList({u"list.csv"_s}));
}

INSTANTIATE_TEST_SUITE_P(Faults, TableFileWhereCallsFail,
                         testing::Values("fill write,create * bytes=100000", "fail create * error=EACCES",
                                         "fail create * error=ENOSPC", "fail write * error=EIO",
                                         "fail rename * error=EACCES", "fail flush,fsync * error=ENOSPC"));

TEST_F(TableFileOnABadDisk, AFullDiskThatShowsWithTheLastBytesIsTold) {
    for (const char* rule : {"fail write * error=ENOSPC\n", "fail flush,fsync * error=ENOSPC\n"}) {
        mount_.SetRules(rule);
        const QString reason = ErrorOf(Target(), Each({}), ExistingFile::Replace).Reason();
        EXPECT_TRUE(reason.contains(u"space"_s)) << reason.toStdString();
    }
}

TEST_F(TableFileOnABadDisk, AMissingRightIsToldInWords) {
    mount_.SetRules("fail create * error=EACCES\n");
    const QString reason = ErrorOf(Target(), Each({}), ExistingFile::Replace).Reason();
    EXPECT_TRUE(reason.contains(u"denied"_s)) << reason.toStdString();
}

#endif

} // namespace quellbox
