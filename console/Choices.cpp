#include "console/Choices.h"

#include "archive/DayWindow.h"
#include "history/HistoryTexts.h"
#include "whitelist/WhitelistStore.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace quellbox {

namespace {

struct NamedField {
    const char* name;
    FieldMatch::Field field;
    int column;
};

constexpr std::array<NamedField, 7> matchFields{{{"date", FieldMatch::Field::Cell, ColumnDate},
                                                 {"to", FieldMatch::Field::Cell, ColumnTo},
                                                 {"from", FieldMatch::Field::Cell, ColumnFrom},
                                                 {"sender", FieldMatch::Field::Sender, 0},
                                                 {"subject", FieldMatch::Field::Cell, ColumnSubject},
                                                 {"size", FieldMatch::Field::Cell, ColumnSize},
                                                 {"name", FieldMatch::Field::Name, 0}}};

FieldMatch ReadMatch(const QString& text) {
    const qsizetype sign = text.indexOf(QLatin1Char('='));
    const QString name = text.left(sign).toLower();
    const auto field = std::find_if(matchFields.begin(), matchFields.end(),
                                    [&name](const NamedField& known) { return name == QLatin1String(known.name); });
    if (sign < 0 || field == matchFields.end()) {
        throw UsageError(QCoreApplication::translate("quellbox", "\"%1\" is no FIELD=TEXT; the fields are %2.")
                             .arg(text, MatchFields().join(QStringLiteral(", "))));
    }
    if (sign + 1 == text.size()) { // as from a variable that is not set; it would match every message
        throw UsageError(
            QCoreApplication::translate("quellbox", "--match: the text after \"%1\" is missing.").arg(text));
    }
    return {field->field, field->column, text.mid(sign + 1)};
}

std::optional<double> ReadScl(const QCommandLineParser& parser, const QString& option) {
    if (!parser.isSet(option)) {
        return std::nullopt;
    }
    bool isNumber = false;
    const double number = QLocale::c().toDouble(parser.value(option), &isNumber);
    if (!isNumber || !std::isfinite(number)) {
        throw UsageError(
            QCoreApplication::translate("quellbox", "--%1: \"%2\" is no number.").arg(option, parser.value(option)));
    }
    return number;
}

QString FieldText(const FieldMatch& match, const MessageRow& row) {
    switch (match.field) {
    case FieldMatch::Field::Sender:
        return row.Tag();
    case FieldMatch::Field::Name:
        return row.Key();
    case FieldMatch::Field::Cell:
        break;
    }
    return row.Cell(match.column);
}

} // namespace

bool MessageChoice::IsEmpty() const {
    const bool isForAllDays = days.isEmpty() || days == QLatin1String("0");
    return isForAllDays && matches.empty() && !leastScl && !mostScl && !tolerated;
}

bool MessageChoice::WantsFile(const FileEntry& file, QDate today) const {
    const bool isRecent = days.isEmpty() || IsRecentFile(days, file.status.modifiedNs, today);
    const bool isWanted = isRecent && (!alsoWants || alsoWants(file));
    return isWanted && std::all_of(matches.begin(), matches.end(), [&file](const FieldMatch& match) {
               return match.field != FieldMatch::Field::Name || file.name.contains(match.text, Qt::CaseInsensitive);
           });
}

bool MessageChoice::WantsRow(const MessageRow& row) const {
    if (leastScl || mostScl) {
        bool isNumber = false;
        const double scl = row.Cell(ColumnScl).toDouble(&isNumber);
        if (!isNumber || (leastScl && scl < *leastScl) || (mostScl && scl > *mostScl)) {
            return false;
        }
    }
    const bool matchesAll = std::all_of(matches.begin(), matches.end(), [&row](const FieldMatch& match) {
        return FieldText(match, row).contains(match.text, Qt::CaseInsensitive);
    });
    return matchesAll && (!tolerated || tolerated->TolerableSender(row.Tag().toLower()));
}

QStringList MatchFields() {
    QStringList names;
    for (const NamedField& field : matchFields) {
        names.append(QLatin1String(field.name));
    }
    return names;
}

QCommandLineOption DaysOption() {
    return {QStringLiteral("days"),
            Tr(QT_TRANSLATE_NOOP("quellbox",
                                 "Only messages of that many calendar days, today being the first; 0 for all.")),
            QStringLiteral("N")};
}

std::optional<QString> ReadDays(const QCommandLineParser& parser) {
    if (!parser.isSet(QStringLiteral("days"))) {
        return std::nullopt;
    }
    constexpr int most = std::numeric_limits<qint16>::max();
    return QString::number(ReadNumber(parser, QStringLiteral("days"), 0, most));
}

void AddChoiceOptions(QCommandLineParser& parser) {
    parser.addOptions(
        {DaysOption(),
         {QStringLiteral("match"),
          Tr(QT_TRANSLATE_NOOP("quellbox", "Only messages with that text in a field: %1. Upper and lower case are the "
                                           "same. May be given several times; then all have to match."))
              .arg(MatchFields().join(QStringLiteral(", "))),
          QStringLiteral("FIELD=TEXT")},
         {QStringLiteral("min-scl"),
          Tr(QT_TRANSLATE_NOOP("quellbox", "Only messages with at least that spam confidence.")), QStringLiteral("N")},
         {QStringLiteral("max-scl"),
          Tr(QT_TRANSLATE_NOOP("quellbox", "Only messages with at most that spam confidence.")), QStringLiteral("N")},
         {QStringLiteral("tolerated"),
          Tr(QT_TRANSLATE_NOOP("quellbox", "Only messages whose envelope sender is on the whitelist."))}});
}

MessageChoice ReadChoice(Session& session, const QCommandLineParser& parser) {
    MessageChoice choice;
    choice.days = ReadDays(parser).value_or(QString());
    for (const QString& match : parser.values(QStringLiteral("match"))) {
        choice.matches.push_back(ReadMatch(match));
    }
    choice.leastScl = ReadScl(parser, QStringLiteral("min-scl"));
    choice.mostScl = ReadScl(parser, QStringLiteral("max-scl"));
    if (parser.isSet(QStringLiteral("tolerated"))) {
        choice.tolerated = std::make_shared<const WhitelistMatcher>(LoadWhitelist(session.Ports().store));
    }
    return choice;
}

int ReadNumber(const QCommandLineParser& parser, const QString& option, int least, int most) {
    bool isNumber = false;
    const int number = parser.value(option).toInt(&isNumber);
    if (!isNumber || number < least || number > most) {
        throw UsageError(QCoreApplication::translate("quellbox", "--%1: \"%2\" is no whole number from %3 to %4.")
                             .arg(option, parser.value(option))
                             .arg(least)
                             .arg(most));
    }
    return number;
}

void RequireArguments(const QCommandLineParser& parser, int least, int most) {
    const qsizetype count = parser.positionalArguments().size();
    if (count < least) {
        throw UsageError(QCoreApplication::translate("quellbox", "An argument is missing."));
    }
    if (count > most) {
        throw UsageError(QCoreApplication::translate("quellbox", "\"%1\" is one argument too many.")
                             .arg(parser.positionalArguments().at(most)));
    }
}

} // namespace quellbox
