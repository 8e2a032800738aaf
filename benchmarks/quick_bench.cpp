// How long a long list takes to be narrowed by what is typed, model and view together, until it is painted. The ratio
// is to a bare scan of all folded texts for the same words, which no narrowing from scratch can avoid.
#include "app/MessageListView.h"
#include "benchmarks/Bench.h"
#include "messages/FoldedRows.h"
#include "messages/QuickFilter.h"

#include <QApplication>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cstdio>

using namespace quellbox;
using namespace quellbox::bench;

namespace {

constexpr int rowCount = 32000;
constexpr int rowsOfSlice = 2000; // as the window makes them ready
constexpr int rounds = 7;

/// Texts as long as they are in use, of words that occur in one row of a hundred.
std::vector<MessageRow> MakeRows() {
    QRandomGenerator random(1);
    constexpr qint64 september2004 = 1'094'000'000; // seconds since 1970
    const auto word = [&random](int letters) {
        QString text;
        for (int letter = 0; letter < letters; ++letter) {
            text += QChar(u'a' + random.bounded(26));
        }
        return text;
    };
    QStringList words;
    for (int count = 0; count < 600; ++count) {
        words += word(random.bounded(3, 11));
    }
    const auto any = [&] { return words.at(random.bounded(600)); };
    std::vector<MessageRow> rows;
    for (int number = 0; number < rowCount; ++number) {
        const MessageTexts texts{QStringLiteral("%1.%2@example.org").arg(any(), any()),
                                 QStringLiteral("\"%1 %2\" <%1@%3.example.com>").arg(any(), any(), any()),
                                 QStringLiteral("%1 %2 %3 %4 %5 %6").arg(any(), any(), any(), any(), any(), any()),
                                 QString::number(random.bounded(10)),
                                 {}};
        rows.emplace_back(QStringLiteral("%1.EML").arg(number, 6, 10, QLatin1Char('0')), random.bounded(500, 90000),
                          september2004 + 60 * number, texts);
    }
    return rows;
}

/// The subject of a row that begins with a letter which not all rows hold.
QString SubjectToSeek(const std::vector<MessageRow>& rows) {
    const auto row = std::find_if(rows.begin(), rows.end(), [](const MessageRow& candidate) {
        return candidate.Cell(ColumnSubject).startsWith(QLatin1Char('k'));
    });
    Require(row != rows.end(), "no subject begins with that letter");
    return row->Cell(ColumnSubject);
}

/// How many rows hold the words, and how long a bare scan takes to find that out.
struct Scan {
    explicit Scan(const std::vector<MessageRow>& rows) {
        for (const MessageRow& row : rows) {
            folded.Append(row);
        }
    }

    double Seconds(const QString& typed) {
        const QuickFilter filter(typed);
        return Time([&] {
            matches = 0;
            for (int place = 0; place < folded.Count(); ++place) {
                matches += filter.Matches(folded.Text(place)) ? 1 : 0;
            }
        });
    }

    FoldedRows folded;
    int matches = 0;
};

/// A list in a shown view, as the window has it.
struct List {
    explicit List(const std::vector<MessageRow>& rows) : view(model) {
        view.resize(900, 400);
        view.show();
        model.Append(rows);
        QCoreApplication::processEvents();
    }

    void Type(const QString& text) {
        view.Narrow(text);
        QCoreApplication::processEvents();
    }

    MessageListModel model;
    MessageListView view{model};
};

/// What is typed, after what was typed before.
struct Step {
    const char* name;
    QString before;
    QString typed;
    bool allSelected = false;
};

void Measure(const std::vector<MessageRow>& rows, const Step& step, Scan& scan) {
    List list(rows);
    list.model.PrepareToNarrow(rowCount);
    Best narrowing;
    Best bare;
    for (int round = 0; round < rounds; ++round) {
        list.Type({});
        if (step.allSelected) {
            list.view.selectAll();
        }
        list.Type(step.before);
        narrowing.Add(Time([&] { list.Type(step.typed); }));
        bare.Add(scan.Seconds(step.typed));
        Require(list.model.Count() == scan.matches, "other rows are in sight");
    }
    std::printf("%-34s %6d rows  %7.2f ms  scan %6.2f ms", step.name, list.model.Count(), narrowing.seconds * 1e3,
                bare.seconds * 1e3);
    step.typed.isEmpty() ? std::printf("\n") : std::printf("  ratio %5.2f\n", narrowing.seconds / bare.seconds);
}

/// What opening the field begins: beside what the user does, in parts.
void MeasurePreparing(const std::vector<MessageRow>& rows) {
    Best whole;
    Best longest; // of the parts of a round
    for (int round = 0; round < rounds; ++round) {
        List list(rows);
        double sum = 0;
        double most = 0;
        for (bool isLeft = true; isLeft;) {
            const double part = Time([&] { isLeft = list.model.PrepareToNarrow(rowsOfSlice); });
            sum += part;
            most = std::max(most, part);
        }
        whole.Add(sum);
        longest.Add(most);
    }
    Report("all rows made ready", whole.seconds * 1e3, "ms");
    Report("longest part of it", longest.seconds * 1e3, "ms");
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const std::vector<MessageRow> rows = MakeRows();
    Scan scan(rows);
    const QString subject = SubjectToSeek(rows);
    const QString word = subject.section(QLatin1Char(' '), 0, 0);
    MeasurePreparing(rows);
    const std::array steps{
        Step{"1 letter", {}, word.left(1)},
        Step{"2 letters, after 1", word.left(1), word.left(2)},
        Step{"a word, after 2 letters", word.left(2), word},
        Step{"a word at once", {}, word},
        Step{"two words at once", {}, subject.section(QLatin1Char(' '), 0, 1)},
        Step{"what occurs nowhere", {}, QStringLiteral("qqqq")},
        Step{"1 letter, after 2", word.left(2), word.left(1)},
        Step{"nothing, after 1 letter", word.left(1), {}},
        Step{"nothing, after a word", word, {}},
        Step{"1 letter, with all selected", {}, word.left(1), true},
        Step{"nothing after it, they selected", word.left(1), {}, true},
    };
    for (const Step& step : steps) {
        Measure(rows, step, scan);
    }
    return 0;
}
