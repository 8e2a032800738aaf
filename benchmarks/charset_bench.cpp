// How many undeclared texts and header fields are read right, by character set: as UTF-8 or Windows-1252, by a guess,
// and with what else the message declares. The declarations of real messages are hidden for that, and texts in many
// languages are put into character sets that had been usual for them (see charset_texts.py).
//     charset_bench FOLDER_OF_MESSAGES [FOLDER_OF_TEXTS]
#include "benchmarks/CharsetTally.h"
#include "mail/Charset.h"
#include "mail/CharsetEvidence.h"
#include "mail/GMimeStart.h"
#include "mail/HeaderDecoder.h"
#include "mail/PartContent.h"

#include <gmime/gmime.h>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

using namespace quellbox;

namespace {

QByteArray ReadFileOrEnd(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s cannot be read.\n", qPrintable(path));
        std::exit(2);
    }
    return file.readAll();
}

bool IsBeyondAscii(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x80; });
}

/// Character sets that the table is about: those of which bytes beyond ASCII, or escapes, are no UTF-8.
bool Counts(const QByteArray& charset, const QByteArray& bytes, const QString& truth) {
    return DecodeNamed("x", charset) && !charset.toLower().startsWith("utf") && IsBeyondAscii(truth) &&
           !truth.contains(QChar(QChar::ReplacementCharacter)) &&
           (!QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8() || bytes.contains('\x1B'));
}

struct TextPart {
    QByteArray bytes;
    QByteArray charset;
};

/// A message as the table needs it.
struct Sample {
    QByteArray header; ///< up to the blank line
    std::vector<TextPart> texts;
};

void AddTexts(GMimeObject*, GMimeObject* part, gpointer sample) {
    if (!GMIME_IS_PART(part) || !g_mime_content_type_is_type(g_mime_object_get_content_type(part), "text", "*") ||
        g_mime_part_get_content(GMIME_PART(part)) == nullptr)
        return;
    GMimeStream* stream = g_mime_stream_mem_new();
    g_mime_data_wrapper_write_to_stream(g_mime_part_get_content(GMIME_PART(part)), stream);
    const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream));
    const char* charset = g_mime_object_get_content_type_parameter(part, "charset");
    static_cast<Sample*>(sample)->texts.push_back(
        {QByteArray(reinterpret_cast<const char*>(bytes->data), bytes->len), charset == nullptr ? "" : charset});
    g_object_unref(stream);
}

Sample ReadSample(const QByteArray& bytes) {
    Sample sample;
    const qsizetype crlf = bytes.indexOf("\r\n\r\n");
    const qsizetype lf = bytes.indexOf("\n\n");
    sample.header = bytes.first(crlf >= 0 && (lf < 0 || crlf < lf) ? crlf + 2 : lf >= 0 ? lf + 1 : bytes.size());
    GMimeStream* stream = g_mime_stream_mem_new_with_buffer(bytes.constData(), static_cast<size_t>(bytes.size()));
    GMimeParser* parser = g_mime_parser_new_with_stream(stream);
    if (GMimeMessage* message = g_mime_parser_construct_message(parser, nullptr)) {
        g_mime_message_foreach(message, AddTexts, &sample);
        g_object_unref(message);
    }
    g_object_unref(parser);
    g_object_unref(stream);
    return sample;
}

/// The same text with encoded words replaced by their bytes.
QByteArray WithoutEncodedWords(const QByteArray& header, QByteArray& lastCharset) {
    static const QRegularExpression word(
        QStringLiteral("=\\?([^?*\\s]+)(?:\\*[^?\\s]*)?\\?([bBqQ])\\?([^?]*)\\?=(?:\\s+(?==\\?))?"));
    const QString text = QString::fromLatin1(header);
    QByteArray out;
    qsizetype end = 0;
    for (auto found = word.globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        QByteArray bytes = match.captured(3).toLatin1();
        if (match.captured(2).compare(u"b", Qt::CaseInsensitive) == 0)
            bytes = QByteArray::fromBase64(bytes);
        else
            bytes = QByteArray::fromPercentEncoding(bytes.replace('_', ' '), '=');
        lastCharset = match.captured(1).toLatin1();
        out += header.sliced(end, match.capturedStart() - end) + bytes;
        end = match.capturedEnd();
    }
    return out + header.sliced(end);
}

QByteArray WithoutCharset(QByteArray header) {
    static const QRegularExpression name(QStringLiteral("charset(?=\\s*=)"), QRegularExpression::CaseInsensitiveOption);
    return QString::fromLatin1(header).replace(name, QStringLiteral("hidden")).toLatin1();
}

std::vector<QByteArray> FieldsOf(const QByteArray& header) {
    std::vector<QByteArray> fields;
    for (const QByteArray& line : header.split('\n')) {
        if ((line.startsWith(' ') || line.startsWith('\t')) && !fields.empty())
            fields.back() += line + '\n';
        else
            fields.push_back(line + '\n');
    }
    return fields;
}

QByteArray Joined(const std::vector<QByteArray>& fields, size_t except, const QByteArray& instead) {
    QByteArray header;
    for (size_t i = 0; i < fields.size(); ++i)
        header += i == except ? instead : fields[i];
    return header;
}

/// Fields in which encoded words declare the character set.
void CountFields(const Sample& sample, CharsetTally& tally) {
    const std::vector<QByteArray> fields = FieldsOf(sample.header);
    QByteArray charset;
    const QByteArray hidden = WithoutCharset(WithoutEncodedWords(sample.header, charset));
    for (size_t i = 0; i < fields.size(); ++i) {
        charset.clear();
        const QByteArray raw = WithoutEncodedWords(fields[i], charset);
        const QString truth = DecodeHeaderValue(fields[i]);
        if (charset.isEmpty() || !Counts(charset, raw, truth))
            continue;
        CharsetShare& share = tally.Row(charset, "header");
        const QByteArray block = Joined(fields, i, raw);
        const CharsetEvidence elsewhere(block);
        ++share.all;
        share.before += DecodeUndeclared(raw.trimmed()) == truth;
        share.guessed += DecodeHeaderValue(raw, CharsetEvidence(hidden)) == truth;
        share.apart += elsewhere.Declared().isEmpty();
        share.declared += DecodeHeaderValue(raw, elsewhere) == truth;
    }
}

/// Fields in raw bytes, of which the texts of the message tell what they are.
void CountRawFields(const Sample& sample, CharsetTally& tally) {
    if (sample.texts.empty())
        return;
    const QByteArray charset = sample.texts.front().charset;
    for (const QByteArray& field : FieldsOf(sample.header)) {
        if (!DecodeNamed("x", charset))
            continue;
        const QString truth = DecodeCharset(field.trimmed(), charset);
        if (!Counts(charset, field, truth) || field.contains("=?"))
            continue;
        CharsetShare& share = tally.Row(charset, "raw header");
        ++share.all;
        ++share.apart;
        share.before += DecodeUndeclared(field.trimmed()) == truth;
        const QByteArray hidden = WithoutCharset(sample.header);
        share.guessed += DecodeHeaderValue(field, CharsetEvidence(hidden)) == DecodeHeaderValue(truth.toUtf8());
    }
}

void CountTexts(const Sample& sample, CharsetTally& tally) {
    const QByteArray withoutCharset = WithoutCharset(sample.header);
    for (size_t i = 0; i < sample.texts.size(); ++i) {
        const TextPart& part = sample.texts[i];
        const QString truth = DecodeTextPart(part.bytes, part.charset, CharsetEvidence());
        if (!Counts(part.charset, part.bytes, truth))
            continue;
        CharsetEvidence elsewhere(withoutCharset);
        for (size_t other = 0; other < sample.texts.size(); ++other) {
            if (other != i)
                elsewhere.Declare(sample.texts[other].charset);
        }
        CharsetShare& share = tally.Row(part.charset, "text");
        ++share.all;
        share.before += DecodeTextPart(DecodeUndeclared(part.bytes).toUtf8(), "utf-8", CharsetEvidence()) == truth;
        share.guessed += DecodeTextPart(part.bytes, {}, CharsetEvidence()) == truth;
        share.apart += elsewhere.Declared().isEmpty();
        share.declared += DecodeTextPart(part.bytes, {}, elsewhere) == truth;
    }
}

CharsetTally CountMessages(const QString& folder) {
    CharsetTally tally;
    for (QDirIterator files(folder, {QStringLiteral("*.eml")}, QDir::Files, QDirIterator::Subdirectories);
         files.hasNext();) {
        const Sample sample = ReadSample(ReadFileOrEnd(files.next()));
        CountFields(sample, tally);
        CountRawFields(sample, tally);
        CountTexts(sample, tally);
    }
    return tally;
}

struct Usual {
    const char* language;
    std::vector<const char*> charsets;
};

const std::vector<Usual>& UsualCharsets() {
    static const std::vector<Usual> usual = {
        {"de", {"windows-1252"}},
        {"fr", {"windows-1252", "iso-8859-15"}},
        {"es", {"windows-1252"}},
        {"pt_BR", {"windows-1252"}},
        {"it", {"windows-1252"}},
        {"sv", {"windows-1252"}},
        {"da", {"windows-1252"}},
        {"fi", {"windows-1252", "iso-8859-15"}},
        {"nl", {"windows-1252"}},
        {"is", {"windows-1252"}},
        {"et", {"windows-1252"}},
        {"pl", {"windows-1250", "iso-8859-2"}},
        {"cs", {"windows-1250", "iso-8859-2"}},
        {"sk", {"windows-1250", "iso-8859-2"}},
        {"hu", {"windows-1250", "iso-8859-2"}},
        {"ro", {"windows-1250", "iso-8859-2"}},
        {"hr", {"windows-1250", "iso-8859-2"}},
        {"sl", {"windows-1250", "iso-8859-2"}},
        {"ru", {"windows-1251", "koi8-r", "iso-8859-5", "cp866"}},
        {"uk", {"windows-1251", "koi8-u"}},
        {"bg", {"windows-1251"}},
        {"sr", {"windows-1251"}},
        {"el", {"windows-1253", "iso-8859-7"}},
        {"tr", {"windows-1254"}},
        {"he", {"windows-1255", "iso-8859-8"}},
        {"ar", {"windows-1256", "iso-8859-6"}},
        {"lt", {"windows-1257", "iso-8859-13"}},
        {"lv", {"windows-1257", "iso-8859-13"}},
        {"th", {"cp874"}},
        {"ja", {"shift_jis", "euc-jp", "iso-2022-jp"}},
        {"ko", {"euc-kr", "iso-2022-kr"}},
        {"zh_CN", {"gb2312", "gb18030", "iso-2022-cn"}},
        {"zh_TW", {"big5", "gb18030"}},
    };
    return usual;
}

QByteArray Encoded(const QByteArray& utf8, const char* charset) {
    gsize size = 0;
    gchar* bytes = g_convert(utf8.constData(), utf8.size(), charset, "UTF-8", nullptr, &size, nullptr);
    const QByteArray encoded(bytes, static_cast<qsizetype>(size));
    g_free(bytes);
    return bytes == nullptr ? QByteArray() : encoded;
}

void CountMade(const QByteArray& bytes, const QString& truth, CharsetShare& share,
               const std::function<QString(const QByteArray&)>& decode) {
    ++share.all;
    ++share.apart;
    share.before += DecodeUndeclared(bytes) == truth;
    const bool isRight = decode(bytes) == truth;
    share.guessed += isRight;
    if (!isRight && std::getenv("CHARSET_BENCH_WRONG") != nullptr)
        std::printf("  wrong: %s\n     as: %s\n", qPrintable(truth.left(200)), qPrintable(decode(bytes).left(200)));
}

void CountMadeOf(const QByteArrayList& lines, const char* language, const char* charset, CharsetTally& headers,
                 CharsetTally& texts) {
    constexpr int subjects = 300;
    constexpr qsizetype linesOfText = 12;
    CharsetShare& header = headers.Row(charset, language);
    CharsetShare& text = texts.Row(charset, language);
    QByteArrayList waiting;
    for (const QByteArray& line : lines) {
        const QByteArray bytes = Encoded(line, charset);
        if (bytes.isEmpty() || (QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8() && !bytes.contains('\x1B')))
            continue;
        if (header.all < subjects) {
            CountMade(bytes, QString::fromUtf8(line), header, [](const QByteArray& subject) {
                const QByteArray block = "Subject: " + subject + "\n";
                return CharsetEvidence(block).DecodeValue(subject);
            });
            continue;
        }
        waiting.append(line);
        if (waiting.size() < linesOfText)
            continue;
        const QByteArray whole = waiting.join("\r\n");
        CountMade(Encoded(whole, charset), QString::fromUtf8(whole), text,
                  [](const QByteArray& body) { return CharsetEvidence().DecodeText(body); });
        waiting.clear();
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: charset_bench FOLDER_OF_MESSAGES [FOLDER_OF_TEXTS]\n");
        return 2;
    }
    StartGMime();
    const CharsetTally messages = CountMessages(QString::fromLocal8Bit(argv[1]));
    messages.Print("Real messages, their declarations hidden");
    CharsetTally headers;
    CharsetTally texts;
    for (const Usual& usual : UsualCharsets()) {
        if (argc < 3)
            break;
        const QString path =
            QString::fromLocal8Bit(argv[2]) + u'/' + QLatin1String(usual.language) + QLatin1String(".txt");
        for (const char* charset : usual.charsets)
            CountMadeOf(ReadFileOrEnd(path).split('\n'), usual.language, charset, headers, texts);
    }
    if (argc >= 3) {
        headers.Print("Made header fields of one line");
        texts.Print("Made texts of twelve lines");
    }
    // One text in two hundred may be read worse than before.
    const bool isKept = messages.KeepsWestern(200) && headers.KeepsWestern(200) && texts.KeepsWestern(200);
    if (!isKept)
        std::fprintf(stderr, "Texts in Windows-1252 are read worse than before.\n");
    return isKept ? 0 : 1;
}
