#include "contents/AttachmentNature.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <QtEndian>

#include <algorithm>

namespace quellbox {

namespace {

/// Kinds of contents, as far as a name or the first bytes tell.
enum Family : unsigned {
    Unknown = 0,
    Program = 1U << 0,
    Zip = 1U << 1, // also modern office documents
    OldOffice = 1U << 2,
    Pdf = 1U << 3,
    Image = 1U << 4,
    Page = 1U << 5,
    RichText = 1U << 6,
    OtherArchive = 1U << 7,
    PlainWords = 1U << 8,
    Sound = 1U << 9,
};

struct FileBeginning {
    QByteArrayView bytes;
    Family family;
};

/// Whether what begins with "MZ", as a text may, has the header of a program: its last four bytes say where another one
/// stands (Microsoft's PE format, "MS-DOS stub"), which is within the file, or nowhere in a program for DOS. Of four
/// letters the number is far too large.
bool HasProgramHeader(const OutlinePart& part) {
    constexpr qsizetype place = 0x3C;
    constexpr qsizetype header = 64;
    return part.content.size() >= header && qFromLittleEndian<quint32>(part.content.constData() + place) <= part.size;
}

Family FamilyOfBytes(const OutlinePart& part) {
    const QByteArray& content = part.content;
    static const FileBeginning beginnings[] = {{"MZ", Program},
                                               {"\x7F"
                                                "ELF",
                                                Program},
                                               {QByteArrayView("L\0\0\0\x01\x14\x02\0", 8), Program},
                                               {"PK\x03\x04", Zip},
                                               {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", OldOffice},
                                               {"%PDF-", Pdf},
                                               {"\x89PNG", Image},
                                               {"GIF8", Image},
                                               {"\xFF\xD8\xFF", Image},
                                               {"{\\rtf", RichText},
                                               {"Rar!", OtherArchive},
                                               {"7z\xBC\xAF\x27\x1C", OtherArchive},
                                               {"MSCF", OtherArchive},
                                               {"\x1F\x8B", OtherArchive},
                                               {"<!DOCTYPE html", Page},
                                               {"<!doctype html", Page},
                                               {"<html", Page},
                                               {"<HTML", Page}};
    const auto found = std::find_if(std::begin(beginnings), std::end(beginnings),
                                    [&content](const FileBeginning& each) { return content.startsWith(each.bytes); });
    if (found == std::end(beginnings) || (found->bytes == "MZ" && !HasProgramHeader(part))) {
        return Unknown;
    }
    return found->family;
}

const QSet<QString>& RunningEndings() {
    static const QSet<QString> endings = [] {
        const QString all = QStringLiteral(
            "exe scr js jse vbs vbe lnk iso img vhd vhdx hta bat cmd ps1 psm1 jar msi msp com pif wsf wsh wsc cpl dll "
            "reg scf sct inf url application appref-ms gadget chm hlp xll ade adp mde msc jnlp apk desktop sh deb rpm "
            "run app command dmg pkg appx msix settingcontent-ms vb mst shb ws iqy slk rdp one py appinstaller "
            "msixbundle "
            "svg html htm");
        const QStringList list = all.split(u' ');
        return QSet<QString>(list.begin(), list.end());
    }();
    return endings;
}

bool IsMacroEnding(const QString& ending) {
    static const QSet<QString> endings{QStringLiteral("docm"), QStringLiteral("dotm"), QStringLiteral("xlsm"),
                                       QStringLiteral("xltm"), QStringLiteral("xlam"), QStringLiteral("xlsb"),
                                       QStringLiteral("pptm"), QStringLiteral("potm"), QStringLiteral("ppam"),
                                       QStringLiteral("ppsm"), QStringLiteral("sldm")};
    return endings.contains(ending);
}

/// What a file of that ending may hold; several for those that programs write in several forms.
unsigned FamiliesOfEnding(const QString& ending) {
    static const QHash<QString, unsigned> families = [] {
        QHash<QString, unsigned> all;
        const auto add = [&all](const char* endings, unsigned family) {
            for (const QString& each : QString::fromLatin1(endings).split(u' ')) {
                all.insert(each, family);
            }
        };
        add("zip odt ods odp epub", Zip);
        // With a password they are wrapped as the old ones.
        add("docx xlsx pptx dotx xltx ppsx docm dotm xlsm xltm xlam xlsb pptm potm ppam ppsm", Zip | OldOffice);
        add("doc xls ppt dot xlt pps", OldOffice | Zip | RichText | Page | PlainWords);
        add("msg pub vsd mpp", OldOffice);
        add("pdf", Pdf);
        add("png gif jpg jpeg jpe jfif bmp tif tiff webp heic ico", Image);
        add("htm html xhtml shtml", Page | PlainWords);
        add("svg", Image | Page | PlainWords);
        add("rtf", RichText);
        add("rar 7z cab gz tgz", OtherArchive);
        add("txt csv log md ics vcf", PlainWords | Page);
        add("mp3 wav ogg m4a flac", Sound);
        return all;
    }();
    return families.value(ending, RunningEndings().contains(ending) ? unsigned{Program} : unsigned{Unknown});
}

unsigned FamiliesOfType(const QByteArray& type) {
    static const QHash<QByteArray, unsigned> families{
        {"application/pdf", Pdf},
        {"application/zip", Zip},
        {"application/x-zip-compressed", Zip},
        {"application/rtf", RichText | OldOffice},
        {"application/x-msdownload", Program},
        {"application/x-dosexec", Program},
        {"application/msword", OldOffice | Zip | RichText | Page | PlainWords},
        {"application/vnd.ms-excel", OldOffice | Zip | Page | PlainWords},
        {"text/html", Page | PlainWords}};
    const auto found = families.constFind(type);
    if (found != families.constEnd()) {
        return *found;
    }
    if (type.startsWith("application/vnd.openxmlformats")) {
        return Zip | OldOffice;
    }
    if (type.startsWith("application/vnd.oasis")) {
        return Zip;
    }
    return type.startsWith("image/") && type != "image/svg+xml" ? Image : type.startsWith("audio/") ? Sound : Unknown;
}

QString NameOfFamily(unsigned family) {
    const char* name = nullptr;
    switch (family) {
    case Program:
        name = QT_TRANSLATE_NOOP("quellbox", "a program");
        break;
    case Zip:
        name = QT_TRANSLATE_NOOP("quellbox", "a ZIP archive or an office document");
        break;
    case OldOffice:
        name = QT_TRANSLATE_NOOP("quellbox", "an office document");
        break;
    case Pdf:
        name = QT_TRANSLATE_NOOP("quellbox", "a PDF document");
        break;
    case Image:
        name = QT_TRANSLATE_NOOP("quellbox", "a picture");
        break;
    case Page:
        name = QT_TRANSLATE_NOOP("quellbox", "a web page");
        break;
    case RichText:
        name = QT_TRANSLATE_NOOP("quellbox", "a text with formats (RTF)");
        break;
    case OtherArchive:
        name = QT_TRANSLATE_NOOP("quellbox", "an archive");
        break;
    default:
        return {};
    }
    return QCoreApplication::translate("quellbox", name);
}

QString EndingOf(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? QString() : name.sliced(dot + 1).trimmed().toLower();
}

bool IsDirectionMark(QChar character) {
    const char16_t unit = character.unicode();
    return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

/// Whether so many blanks of any kind follow each other that what is behind them gets out of sight.
bool HasManyBlanks(const QString& name) {
    constexpr int many = 5;
    int blanks = 0;
    return std::any_of(name.begin(), name.end(), [&blanks](QChar character) {
        blanks = character.isSpace() ? blanks + 1 : 0;
        return blanks == many;
    });
}

/// Whether a name such as "invoice.pdf.exe" shows another ending before its own, or many blanks.
bool HidesEnding(const QString& name, const QString& ending) {
    if (std::any_of(name.begin(), name.end(), IsDirectionMark) || HasManyBlanks(name)) {
        return true;
    }
    const QString before = EndingOf(name.chopped(std::min(name.size(), ending.size() + 1)));
    return RunningEndings().contains(ending) && FamiliesOfEnding(before) != Unknown;
}

/// The name as Windows keeps it, without dots and blanks at its end.
QString WithoutEndOfDots(QString name) {
    while (!name.isEmpty() && (name.back() == u'.' || name.back().isSpace())) {
        name.chop(1);
    }
    return name.trimmed();
}

} // namespace

AttachmentNature JudgeAttachment(const OutlinePart& part) {
    const QString name = WithoutEndOfDots(part.fileName);
    const QString ending = EndingOf(name);
    const Family held = FamilyOfBytes(part);
    const unsigned named = FamiliesOfEnding(ending);
    const unsigned declared = FamiliesOfType(part.type);
    AttachmentNature nature;
    nature.runs = RunningEndings().contains(ending) || held == Program;
    nature.hasMacros = IsMacroEnding(ending);
    nature.hidesEnding = HidesEnding(name, ending);
    const bool isMisnamed = held != Unknown && named != Unknown && (named & held) == 0 && named != Program;
    const bool isMisdeclared = declared != Unknown && ((held != Unknown && (declared & held) == 0) ||
                                                       (named != Unknown && (declared & named) == 0));
    nature.disagrees = isMisnamed || isMisdeclared;
    nature.holds = nature.disagrees ? NameOfFamily(held) : QString();
    return nature;
}

} // namespace quellbox
