#include "mail/CharsetEvidence.h"

#include "mail/Charset.h"
#include "mail/HeaderFields.h"
#include "mail/MailMessage.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

namespace quellbox {

namespace {

struct UndeclaredSample {
    const char* charset; ///< what the bytes are in
    const char* text;
    QByteArray bytes;
};

void PrintTo(const UndeclaredSample& sample, std::ostream* out) {
    *out << sample.charset << ": " << sample.text;
}

const UndeclaredSample undeclaredSamples[] = {
    {"windows-1251", "Добрый день! Напоминаем, что завтра в десять часов утра состоится собрание жильцов.",
     "\xC4\xEE\xE1\xF0\xFB\xE9 \xE4\xE5\xED\xFC! \xCD\xE0\xEF\xEE\xEC\xE8\xED\xE0\xE5\xEC, \xF7\xF2"
     "\xEE \xE7\xE0\xE2\xF2\xF0\xE0 \xE2 \xE4\xE5\xF1\xFF\xF2\xFC \xF7\xE0\xF1\xEE\xE2 \xF3\xF2\xF0"
     "\xE0 \xF1\xEE\xF1\xF2\xEE\xE8\xF2\xF1\xFF \xF1\xEE\xE1\xF0\xE0\xED\xE8\xE5 \xE6\xE8\xEB\xFC"
     "\xF6\xEE\xE2."},
    {"koi8-u", "Шановні колеги, нагадуємо про нараду, яка відбудеться у п'ятницю об одинадцятій.",
     "\xFB\xC1\xCE\xCF\xD7\xCE\xA6 \xCB\xCF\xCC\xC5\xC7\xC9, \xCE\xC1\xC7\xC1\xC4\xD5\xA4\xCD\xCF"
     " \xD0\xD2\xCF \xCE\xC1\xD2\xC1\xC4\xD5, \xD1\xCB\xC1 \xD7\xA6\xC4\xC2\xD5\xC4\xC5\xD4\xD8\xD3"
     "\xD1 \xD5 \xD0'\xD1\xD4\xCE\xC9\xC3\xC0 \xCF\xC2 \xCF\xC4\xC9\xCE\xC1\xC4\xC3\xD1\xD4\xA6\xCA"
     "."},
    {"iso-8859-5", "Расписание занятий на следующую неделю изменилось, посмотрите его на сайте.",
     "\xC0\xD0\xE1\xDF\xD8\xE1\xD0\xDD\xD8\xD5 \xD7\xD0\xDD\xEF\xE2\xD8\xD9 \xDD\xD0 \xE1\xDB\xD5"
     "\xD4\xE3\xEE\xE9\xE3\xEE \xDD\xD5\xD4\xD5\xDB\xEE \xD8\xD7\xDC\xD5\xDD\xD8\xDB\xDE\xE1\xEC,"
     " \xDF\xDE\xE1\xDC\xDE\xE2\xE0\xD8\xE2\xD5 \xD5\xD3\xDE \xDD\xD0 \xE1\xD0\xD9\xE2\xD5."},
    {"cp866", "Письмо из старой программы, которая работает в текстовом окне и не знает других кодировок.",
     "\x8F\xA8\xE1\xEC\xAC\xAE \xA8\xA7 \xE1\xE2\xA0\xE0\xAE\xA9 \xAF\xE0\xAE\xA3\xE0\xA0\xAC\xAC"
     "\xEB, \xAA\xAE\xE2\xAE\xE0\xA0\xEF \xE0\xA0\xA1\xAE\xE2\xA0\xA5\xE2 \xA2 \xE2\xA5\xAA\xE1\xE2"
     "\xAE\xA2\xAE\xAC \xAE\xAA\xAD\xA5 \xA8 \xAD\xA5 \xA7\xAD\xA0\xA5\xE2 \xA4\xE0\xE3\xA3\xA8\xE5"
     " \xAA\xAE\xA4\xA8\xE0\xAE\xA2\xAE\xAA."},
    {"iso-8859-7", "Καλημέρα σας, η παραγγελία σας είναι έτοιμη και μπορείτε να την παραλάβετε αύριο.",
     "\xCA\xE1\xEB\xE7\xEC\xDD\xF1\xE1 \xF3\xE1\xF2, \xE7 \xF0\xE1\xF1\xE1\xE3\xE3\xE5\xEB\xDF\xE1"
     " \xF3\xE1\xF2 \xE5\xDF\xED\xE1\xE9 \xDD\xF4\xEF\xE9\xEC\xE7 \xEA\xE1\xE9 \xEC\xF0\xEF\xF1\xE5"
     "\xDF\xF4\xE5 \xED\xE1 \xF4\xE7\xED \xF0\xE1\xF1\xE1\xEB\xDC\xE2\xE5\xF4\xE5 \xE1\xFD\xF1\xE9"
     "\xEF."},
    {"windows-1254", "Sayın müşterimiz, siparişiniz yarın öğleden sonra adresinize ulaşacaktır, iyi günler dileriz.",
     "Say\xFDn m\xFC\xFEterimiz, sipari\xFEiniz yar\xFDn \xF6\xF0leden sonra adresinize ula\xFE"
     "a"
     "cakt\xFDr, iyi g\xFCnler dileriz."},
    {"windows-1250", "Zażółć gęślą jaźń, czyli krótkie zdanie, w którym są wszystkie polskie znaki.",
     "Za\xBF\xF3\xB3\xE6 g\xEA\x9Cl\xB9 ja\x9F\xF1, czyli kr\xF3tkie zdanie, w kt\xF3rym s\xB9 ws"
     "zystkie polskie znaki."},
    {"iso-8859-2", "Příští týden přijedeme dříve, prosím připravte klíče a žádné další věci neřešte.",
     "P\xF8\xED\xB9t\xED t\xFD"
     "den p\xF8ijedeme d\xF8\xEDve, pros\xEDm p\xF8ipravte kl\xED\xE8"
     "e"
     " a \xBE\xE1"
     "dn\xE9 dal\xB9\xED v\xEC"
     "ci ne\xF8"
     "e\xB9te."},
    {"windows-1257", "Lūdzu, atsūtiet mums rēķinu līdz ceturtdienai, jo pēc tam būsim atvaļinājumā.",
     "L\xFB"
     "dzu, ats\xFBtiet mums r\xE7\xEDinu l\xEE"
     "dz ceturtdienai, jo p\xE7"
     "c tam b\xFBs"
     "im atva\xEFin\xE2jum\xE2."},
    {"windows-1255", "שלום לכולם, הפגישה של מחר תתחיל בשעה תשע בבוקר ולא בשעה עשר כפי שנכתב.",
     "\xF9\xEC\xE5\xED \xEC\xEB\xE5\xEC\xED, \xE4\xF4\xE2\xE9\xF9\xE4 \xF9\xEC \xEE\xE7\xF8 \xFA\xFA"
     "\xE7\xE9\xEC \xE1\xF9\xF2\xE4 \xFA\xF9\xF2 \xE1\xE1\xE5\xF7\xF8 \xE5\xEC\xE0 \xE1\xF9\xF2\xE4"
     " \xF2\xF9\xF8 \xEB\xF4\xE9 \xF9\xF0\xEB\xFA\xE1."},
    {"windows-1256", "السلام عليكم، نود إعلامكم بأن الاجتماع القادم سيكون يوم الخميس في المكتب.",
     "\xC7\xE1\xD3\xE1\xC7\xE3 \xDA\xE1\xED\xDF\xE3\xA1 \xE4\xE6\xCF \xC5\xDA\xE1\xC7\xE3\xDF\xE3"
     " \xC8\xC3\xE4 \xC7\xE1\xC7\xCC\xCA\xE3\xC7\xDA \xC7\xE1\xDE\xC7\xCF\xE3 \xD3\xED\xDF\xE6\xE4"
     " \xED\xE6\xE3 \xC7\xE1\xCE\xE3\xED\xD3 \xDD\xED \xC7\xE1\xE3\xDF\xCA\xC8."},
    {"tis-620", "ขอเชิญทุกท่านเข้าร่วมประชุมในวันพรุ่งนี้เวลาเก้านาฬิกาที่ห้องประชุมใหญ่",
     "\xA2\xCD\xE0\xAA\xD4\xAD\xB7\xD8\xA1\xB7\xE8\xD2\xB9\xE0\xA2\xE9\xD2\xC3\xE8\xC7\xC1\xBB\xC3"
     "\xD0\xAA\xD8\xC1\xE3\xB9\xC7\xD1\xB9\xBE\xC3\xD8\xE8\xA7\xB9\xD5\xE9\xE0\xC7\xC5\xD2\xE0\xA1"
     "\xE9\xD2\xB9\xD2\xCC\xD4\xA1\xD2\xB7\xD5\xE8\xCB\xE9\xCD\xA7\xBB\xC3\xD0\xAA\xD8\xC1\xE3\xCB"
     "\xAD\xE8"},
    {"gb18030", "各位同事，明天上午九点在二楼会议室开会，请大家准时参加。",
     "\xB8\xF7\xCE\xBB\xCD\xAC\xCA\xC2\xA3\xAC\xC3\xF7\xCC\xEC\xC9\xCF\xCE\xE7\xBE\xC5\xB5\xE3\xD4"
     "\xDA\xB6\xFE\xC2\xA5\xBB\xE1\xD2\xE9\xCA\xD2\xBF\xAA\xBB\xE1\xA3\xAC\xC7\xEB\xB4\xF3\xBC\xD2"
     "\xD7\xBC\xCA\xB1\xB2\xCE\xBC\xD3\xA1\xA3"},
    {"big5", "各位同事，明天上午九點在二樓會議室開會，請大家準時參加。",
     "\xA6U\xA6\xEC\xA6P\xA8\xC6\xA1"
     "A\xA9\xFA\xA4\xD1\xA4W\xA4\xC8\xA4"
     "E\xC2I\xA6"
     "b\xA4G\xBC"
     "\xD3\xB7|\xC4\xB3\xAB\xC7\xB6}\xB7|\xA1"
     "A\xBD\xD0\xA4j\xAE"
     "a\xB7\xC7\xAE\xC9\xB0\xD1\xA5"
     "[\xA1"
     "C"},
    {"euc-kr", "안녕하세요, 내일 오전 아홉 시에 회의실에서 회의가 있으니 모두 참석해 주세요.",
     "\xBE\xC8\xB3\xE7\xC7\xCF\xBC\xBC\xBF\xE4, \xB3\xBB\xC0\xCF \xBF\xC0\xC0\xFC \xBE\xC6\xC8\xA9"
     " \xBD\xC3\xBF\xA1 \xC8\xB8\xC0\xC7\xBD\xC7\xBF\xA1\xBC\xAD \xC8\xB8\xC0\xC7\xB0\xA1 \xC0\xD6"
     "\xC0\xB8\xB4\xCF \xB8\xF0\xB5\xCE \xC2\xFC\xBC\xAE\xC7\xD8 \xC1\xD6\xBC\xBC\xBF\xE4."},
    {"shift_jis", "お世話になっております。明日の会議は午前九時から二階の会議室で行います。",
     "\x82\xA8\x90\xA2\x98"
     "b\x82\xC9\x82\xC8\x82\xC1\x82\xC4\x82\xA8\x82\xE8\x82\xDC\x82\xB7\x81"
     "B\x96\xBE\x93\xFA\x82\xCC\x89\xEF\x8B"
     "c\x82\xCD\x8C\xDF\x91O\x8B\xE3\x8E\x9E\x82\xA9\x82\xE7"
     "\x93\xF1\x8AK\x82\xCC\x89\xEF\x8B"
     "c\x8E\xBA\x82\xC5\x8Ds\x82\xA2\x82\xDC\x82\xB7\x81"
     "B"},
    {"euc-jp", "ご注文の品は来週の月曜日にお届けいたしますので、少々お待ちください。",
     "\xA4\xB4\xC3\xED\xCA\xB8\xA4\xCE\xC9\xCA\xA4\xCF\xCD\xE8\xBD\xB5\xA4\xCE\xB7\xEE\xCD\xCB\xC6"
     "\xFC\xA4\xCB\xA4\xAA\xC6\xCF\xA4\xB1\xA4\xA4\xA4\xBF\xA4\xB7\xA4\xDE\xA4\xB9\xA4\xCE\xA4\xC7"
     "\xA1\xA2\xBE\xAF\xA1\xB9\xA4\xAA\xC2\xD4\xA4\xC1\xA4\xAF\xA4\xC0\xA4\xB5\xA4\xA4\xA1\xA3"},
    {"iso-2022-jp", "資料を添付しましたので、ご確認をお願いいたします。",
     "\x1B$B;qNA$rE:IU$7$^$7$\x3F$N$G!\x22$43NG'$r$*4j$$$$$\x3F$7$^$9!#\x1B(B"},
    {"iso-2022-kr", "첨부한 자료를 확인해 주시기 바랍니다.",
     "\x1B$)C\x0E"
     "C7:NGQ\x0F \x0E@Z7a8&\x0F \x0EH.@NGX\x0F \x0E"
     "AV=C1b\x0F \x0E"
     "9Y6x4O4Y\x0F"
     "."},
};

class UndeclaredSampleTest : public testing::TestWithParam<UndeclaredSample> {
#ifdef _WIN32
protected:
    /// Windows knows the character sets that it was installed with.
    void SetUp() override {
        const std::optional<QString> declared = DecodeNamed(GetParam().bytes, GetParam().charset);
        if (!declared || declared->toStdString() != GetParam().text) {
            GTEST_SKIP() << "this system cannot read the character set";
        }
    }
#endif
};

std::string SubjectOf(const QByteArray& message) {
    MailMessage whole;
    whole.LoadBytes(message);
    const QString subject = ParseHeaderFields(message).subject;
    EXPECT_EQ(whole.Subject(), subject) << "the list and the structure tree show the same";
    return subject.toStdString();
}

/// The text of the last part.
std::string TextOf(const QByteArray& message) {
    MailMessage whole;
    EXPECT_EQ(whole.LoadBytes(message), 0);
    return whole.Parts().empty() ? std::string() : whole.Parts().back().text.toStdString();
}

} // namespace

TEST_P(UndeclaredSampleTest, IsReadAsASubject) {
    EXPECT_EQ(SubjectOf("From: a@example.org\r\nSubject: " + GetParam().bytes + "\r\n\r\n"), GetParam().text);
}

TEST_P(UndeclaredSampleTest, IsReadAsAText) {
    EXPECT_EQ(TextOf("From: a@example.org\r\n\r\n" + GetParam().bytes), GetParam().text);
}

TEST_P(UndeclaredSampleTest, IsReadAsATextThatSaysASCII) {
    EXPECT_EQ(TextOf("Content-Type: text/plain; charset=us-ascii\r\n\r\n" + GetParam().bytes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Charsets, UndeclaredSampleTest, testing::ValuesIn(undeclaredSamples));

TEST(CharsetEvidence, TextsOfTheWestStayInWindows1252) {
    const auto read = [](const char* bytes) { return CharsetEvidence().DecodeText(bytes).toStdString(); };
    EXPECT_EQ(read("Houses rise \xA3"
                   "1,100 a week"),
              "Houses rise £1,100 a week");
    EXPECT_EQ(read("It\x92s \x93here\x94 \x97 for 5 \x80"), "It’s “here” — for 5 €");
    EXPECT_EQ(read("Gr\xFC\xDF"
                   "e aus K\xF6ln"),
              "Grüße aus Köln");
    EXPECT_EQ(read("\xBFQu\xE9 a\xF1o?"), "¿Qué año?");
    EXPECT_EQ(read("Voil\xE0 l'\x9Cuvre re\xE7ue"), "Voilà l'œuvre reçue");
    EXPECT_EQ(read("Vi\xF0 b\xED\xF0um eftir \xFE\xE9r"), "Við bíðum eftir þér");
    EXPECT_EQ(read("H\xE4\xE4y\xF6"
                   "aie on y\xF6t\xF6in"),
              "Hääyöaie on yötöin");
}

TEST(CharsetEvidence, ContentTypeOfTheMessageDeclaresItsFields) {
    // Too short for any guess: three letters of Greek, or of the west.
    EXPECT_EQ(SubjectOf("Subject: \xE1\xE2\xE3\nContent-Type: text/plain;\n\tCHARSET = \"ISO-8859-7\"\n\n"), "αβγ");
    EXPECT_EQ(SubjectOf("Content-Type: text/plain; charset=koi8-r\nSubject: \xC4\xC1\n\n"), "да");
    EXPECT_EQ(SubjectOf("Content-Type: text/plain\nSubject: \xE1\xE2\xE3\n\n"), "áâã");
}

TEST(CharsetEvidence, EncodedWordElsewhereDeclaresAField) {
    EXPECT_EQ(SubjectOf("From: =?koi8-r?B?5MHbwQ==?= <a@example.org>\nSubject: \xC4\xC1\n\n"), "да");
    EXPECT_EQ(SubjectOf("Subject: \xC4\xC1 =?koi8-r*ru?B?5MHbwQ==?=\n\n"), "да Даша");
}

TEST(CharsetEvidence, WordInAnUnknownCharacterSetIsUndeclared) {
    EXPECT_EQ(SubjectOf("Subject: =?x-unknown?Q?=E1=E2=E3?=\nContent-Type: text/plain; charset=iso-8859-7\n\n"), "αβγ");
}

TEST(CharsetEvidence, DeclarationThatTheBytesContradictDoesNotCount) {
    // Neither is 0xFF a character of EUC-KR nor ASCII, and what UTF-16 or Windows-1252 would make of Korean is no text.
    EXPECT_EQ(SubjectOf("Subject: na\xEFve \xFF\nContent-Type: text/plain; charset=euc-kr\n\n"), "naïve ÿ");
    for (const char* charset : {"utf-16le", "us-ascii", "iso-8859-1", "utf-8", "no-such-thing"}) {
        EXPECT_EQ(SubjectOf("Content-Type: text/plain; charset=" + QByteArray(charset) +
                            "\nSubject: (\xB1\xA4\xB0\xED) \xBD\xC5\xBC\xB1\xC7\xD1 \xBB\xFD\xBC\xB1\n\n"),
                  "(광고) 신선한 생선")
            << charset;
    }
}

TEST(CharsetEvidence, DeclaredUtf8ThatWasCutIsReadAsUtf8) {
    EXPECT_EQ(SubjectOf("Subject: Gr\xC3\xBC\xC3\x9F"
                        "e aus K\xC3\xB6ln und M\xC3\nContent-Type: text/plain; charset=utf-8\n\n"),
              "Grüße aus Köln und M\uFFFD");
}

TEST(CharsetEvidence, SiblingDeclaresAPart) {
    EXPECT_EQ(
        TextOf("Content-Type: multipart/alternative; boundary=b\n\n--b\nContent-Type: text/html; charset=iso-8859-7\n\n"
               "x\n--b\nContent-Type: text/plain\n\n\xE1\xE2\xE3\n--b--\n"),
        "αβγ");
}

TEST(CharsetEvidence, EncodedWordOfTheHeaderDeclaresAPart) {
    EXPECT_EQ(TextOf("Subject: =?iso-8859-7?Q?=E1?=\n\n\xE1\xE2\xE3"), "αβγ");
}

TEST(CharsetEvidence, EncodedWordOfTheHeaderDeclaresAFileName) {
    MailMessage message;
    message.LoadBytes("Subject: =?gb2312?B?yrG85LHt?=\nContent-Type: multipart/mixed; boundary=b\n\n--b\n"
                      "Content-Disposition: attachment; filename=\"\xCA\xB1\xBC\xE4\xB1\xED.txt\"\n\nx\n--b--\n");
    ASSERT_EQ(message.Parts().size(), 1U);
    EXPECT_EQ(message.Parts()[0].attachment.toStdString(), "时间表.txt");
}

TEST(CharsetEvidence, FileNamesInRawBytesFollowTheTextsBesideThem) {
    const auto nameAfter = [](const QByteArray& header, const QByteArray& field) {
        MailMessage message;
        message.LoadBytes(header + "Content-Type: multipart/mixed; boundary=b\n\n--b\n" + field + "\n\nx\n--b--\n");
        return message.Parts().empty() ? "" : message.Parts().back().attachment.toStdString();
    };
    const QByteArray text = "Content-Type: text/plain; charset=koi8-r\n\nx\n--b\n";
    EXPECT_EQ(nameAfter("", text + "Content-Disposition: attachment;\n\tfilename=\"\xF0\xD2\xC9\xD7\xC5\xD4.pdf\""),
              "Привет.pdf");
    EXPECT_EQ(nameAfter("", text + "Content-Type: application/pdf; name=\xF0\xD2\xC9\xD7\xC5\xD4.pdf"), "Привет.pdf");
    EXPECT_EQ(nameAfter("", "Content-Disposition: attachment; filename=\"\x1B$B%F%9%H\x1B(B.pdf\""), "テスト.pdf");
    EXPECT_EQ(nameAfter("Subject: \xCD\xE0\xEF\xEE\xEC\xE8\xED\xE0\xE5\xEC \xEE \xF1\xEE\xE1\xF0\xE0\xED\xE8\xE8\n",
                        "Content-Disposition: attachment; filename=\"\xCF\xF0\xE8\xE2\xE5\xF2.pdf\""),
              "Привет.pdf")
        << "guessed from the subject";
    EXPECT_EQ(nameAfter("", text + "Content-Disposition: attachment; filename=\"=?utf-8?Q?=C3=BC?=.pdf\""), "ü.pdf");
    EXPECT_EQ(nameAfter("", text + "Content-Disposition: attachment; filename=\"\xC3\xBC.pdf\""), "ü.pdf");
    EXPECT_EQ(nameAfter("", text + "Content-Disposition: attachment; filename=\"\xF0\xD2\r\n \xC9.pdf\""), "Пр и.pdf")
        << "folded";
    const QByteArray raw = "Content-Disposition: attachment; filename=\"\xF0\xD2.pdf\"";
    const QByteArray plain = "Content-Disposition: attachment; filename=b.exe";
    EXPECT_EQ(nameAfter("", text + raw + "\n" + plain), "b.exe") << "the last one counts";
    EXPECT_EQ(nameAfter("", text + plain + "\n" + raw), "Пр.pdf");
}

TEST(CharsetEvidence, PartsDeclareNothingForTheFieldsThatTheListShows) {
    EXPECT_EQ(SubjectOf("Subject: \xE1\xE2\xE3\nContent-Type: multipart/mixed; boundary=b\n\n--b\n"
                        "Content-Type: text/plain; charset=iso-8859-7\n\nx\n--b--\n"),
              "áâã");
}

TEST(CharsetEvidence, FieldsOfOneHeaderMayBeInSeveralCharacterSets) {
    const QByteArray message =
        "From: J\xFCrgen M\xFCller <j@example.org>\nSubject: \xCD\xE0\xEF\xEE\xEC\xE8\xED\xE0\xE5\xEC"
        " \xEE \xF1\xEE\xE1\xF0\xE0\xED\xE8\xE8 \xE2 \xE7\xE0\xE2\xF2\xF0\xE0\xF8\xED\xE8\xE9"
        " \xE4\xE5\xED\xFC\n\n";
    EXPECT_EQ(SubjectOf(message), "Напоминаем о собрании в завтрашний день");
    EXPECT_EQ(ParseHeaderFields(message).sender.toStdString(), "Jürgen Müller <j@example.org>");
}

TEST(CharsetEvidence, EscapeSequencesOfNoCharacterSetAreNoDeclaration) {
    EXPECT_EQ(CharsetEvidence().DecodeText("\x1B[1mbold\x1B[0m").toStdString(), "\x1B[1mbold\x1B[0m");
    EXPECT_EQ(CharsetEvidence().DecodeText("\x1B").toStdString(), "\x1B");
}

TEST(CharsetEvidence, LongTextIsGuessedFromSomeOfItsLines) {
    const UndeclaredSample& sample = undeclaredSamples[0];
    const QByteArray bytes = QByteArray(3'000'000, 'x') + "\n" + QByteArray(sample.bytes + " ").repeated(2000);
    const QString text = CharsetEvidence().DecodeText(bytes);
    EXPECT_TRUE(text.endsWith(QString::fromUtf8(sample.text) + u' '));
}

} // namespace quellbox
