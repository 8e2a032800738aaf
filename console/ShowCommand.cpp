#include "archive/MessageReading.h"
#include "console/ArchiveRows.h"
#include "console/Aside.h"
#include "console/Command.h"
#include "console/TableWriter.h"
#include "contents/MessageWarnings.h"
#include "contents/ReadableBody.h"
#include "contents/ReadableText.h"
#include "contents/StructureTree.h"
#include "mail/DisplayText.h"
#include "mail/MailMessage.h"
#include "mail/MessageOutline.h"
#include "mail/PackedFile.h"
#include "messages/ListTable.h"
#include "settings/ChosenProfile.h"

#include <QCoreApplication>

namespace quellbox {

namespace {

QStringList Attachments(const MailMessage& message) {
    QStringList names;
    for (const MessagePart& part : message.Parts()) {
        if (!part.attachment.isEmpty()) {
            names.append(part.attachment);
        }
    }
    return names;
}

void AddNodes(TableWriter& table, const StructureTree& nodes, int level) {
    for (const StructureNode& node : nodes) {
        table.Add({QString::number(level), node.text});
        AddNodes(table, node.children, level + 1);
    }
}

void PrintNodes(OutputBuffer& output, const StructureTree& nodes, int level) {
    for (const StructureNode& node : nodes) {
        output.Append(QString(2 * level, QLatin1Char(' ')) + node.text + QLatin1Char('\n'));
        PrintNodes(output, node.children, level + 1);
    }
}

void PrintTree(Session& session, OutputForm form, const StructureTree& tree) {
    if (form == OutputForm::Text) {
        OutputBuffer output(session);
        PrintNodes(output, tree, 0);
        return;
    }
    TableWriter table(session, form,
                      {{QStringLiteral("level"), QCoreApplication::translate("quellbox", "Level"), true},
                       {QStringLiteral("text"), QCoreApplication::translate("quellbox", "Text")}});
    AddNodes(table, tree, 0);
}

/// What scripts read of a message: its body alone, and apart from it what does not fit together.
struct ShownTexts {
    QString body;
    QStringList warnings;
};

/// A column of its own holds nothing of the program's that the text would have to be told from, so that the text is
/// there as it was written.
QString WithoutMargin(QStringView text) {
    QString plain;
    plain.reserve(text.size());
    for (QStringView line : text.tokenize(u'\n')) {
        for (; line.startsWith(QLatin1String("| ")); line = line.sliced(2)) {
            plain += line.first(2);
        }
        line = line.startsWith(QLatin1String("  ")) ? line.sliced(2) : line;
        for (qsizetype at = 0; at < line.size(); ++at) {
            const bool isEscape = line[at] == u'\\' && line.sliced(at).startsWith(QLatin1String("\\["));
            plain += isEscape ? line[++at] : line[at];
        }
        plain += u'\n';
    }
    plain.chop(1);
    return plain;
}

ShownTexts ReadTexts(const QByteArray& bytes, const ServerProfile& profile) {
    MessageOutline outline;
    if (ReadOutline(bytes, outline) != LoadError::None) {
        return {};
    }
    const ReadableBody body = ReadBody(outline);
    ShownTexts texts{WithoutMargin(CleanseLines(body.text)), {}};
    for (const MessageWarning& warning : FindWarnings({bytes, outline, body, profile})) {
        texts.warnings.append(warning.text);
    }
    return texts;
}

void PrintRow(Session& session, OutputForm form, const MessageRow& row, const ShownTexts& texts,
              const QStringList& attachments) {
    TableColumns columns = ListTableColumns(ChosenProfile(session.State()).RatesByNumber());
    columns.push_back({QStringLiteral("text"), QCoreApplication::translate("quellbox", "Text")});
    columns.push_back({QStringLiteral("attachments"), QCoreApplication::translate("quellbox", "Attachments")});
    columns.push_back({QStringLiteral("warnings"), QCoreApplication::translate("quellbox", "Warnings")});
    TableWriter table(session, form, columns);
    const QChar lineEnd(u'\n');
    table.Add(CellsOf(row) << texts.body << attachments.join(lineEnd) << texts.warnings.join(lineEnd));
}

/// The one message that is named. Throws CommandError.
MessageRow NamedMessage(Session& session, const QString& name) {
    NamedRows named = RowsOf(session, QStringList(name));
    if (named.rows.empty()) {
        session.Tell(named.failures);
        throw CommandError(ExitCode::SomeFailed, {});
    }
    return std::move(named.rows.front());
}

} // namespace

void AddShowOptions(QCommandLineParser& parser) {
    parser.addOptions(
        {{QStringLiteral("raw"),
          QCoreApplication::translate("quellbox", "Print the bytes of the message as they are.")},
         {QStringLiteral("tree"), QCoreApplication::translate("quellbox", "Print the structure of the message.")}});
}

ExitCode RunShow(Session& session, const QCommandLineParser& parser) {
    RequireArguments(parser, 1, 1);
    const OutputForm form = ReadForm(parser);
    const bool isRaw = parser.isSet(QStringLiteral("raw"));
    const bool isTree = parser.isSet(QStringLiteral("tree"));
    if (isRaw && (isTree || form != OutputForm::Text)) {
        throw UsageError(
            QCoreApplication::translate("quellbox", "--raw cannot be combined with --tree, --csv or --json."));
    }
    const MessageRow row = NamedMessage(session, parser.positionalArguments().first());
    const ServerProfile& profile = ChosenProfile(session.State());
    const QByteArray bytes =
        CallAside(session, [&files = session.Ports().files, path = session.Archive().PathOf(row.Key()),
                            packing = profile.packing] { return ReadWholeMessage(files, path, packing); });
    if (isRaw) {
        OutputBuffer(session).Append(QByteArrayView(bytes));
        return ExitCode::Done;
    }
    MailMessage message;
    if (message.LoadBytes(bytes) != 0) {
        throw CommandError(ExitCode::SomeFailed, row.Key() + QStringLiteral(": ") + message.LastErrorText());
    }
    if (isTree) {
        PrintTree(session, form, BuildStructureTree(message, profile.reasons));
    } else if (form == OutputForm::Text) {
        OutputBuffer(session).Append(ReadableText(bytes, profile));
    } else {
        PrintRow(session, form, row, ReadTexts(bytes, profile), Attachments(message));
    }
    return ExitCode::Done;
}

} // namespace quellbox
