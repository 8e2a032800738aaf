#include "samples/Texts.h"

#include <array>

namespace quellbox::samples {

namespace {

constexpr qsizetype paragraphSize = 320;
constexpr qsizetype lineLimit = 72;

constexpr std::array firstNames{"Ada",  "Bruno", "Carla", "David", "Elena", "Frank", "Greta", "Hugo",
                                "Ines", "Jonas", "Karin", "Luis",  "Marta", "Nils",  "Olga",  "Paul"};
constexpr std::array lastNames{"Archer", "Brandt", "Costa", "Dekker", "Egger",  "Fischer",
                               "Garcia", "Holm",   "Ivers", "Jensen", "Keller", "Lambert"};
constexpr std::array mailboxes{"info", "sales", "office", "orders", "support", "accounts", "warehouse", "post"};
constexpr std::array ownDomains{"example.com", "mail.example.com", "branch.example.org"};
constexpr std::array wantedDomains{"example.net", "supplies.example.net", "printing.example.org", "lab.test",
                                   "transport.test"};
constexpr std::array spamWords{"deal", "bonus", "win", "cash", "slim", "watch", "click", "meds", "casino", "hot"};
constexpr std::array spamDomains{"bargain.example",  "best-offer.invalid", "prizes.test",  "cheap.example",
                                 "quick-money.test", "newsletter.example", "mega.invalid", "lucky.example.net"};
constexpr std::array spamSubjects{"You have been selected",
                                  "Cheap watches, only this week",
                                  "RE: your request",
                                  "Lose ten pounds in ten days",
                                  "Final notice: claim your prize",
                                  "Make money from home",
                                  "*** HOT OFFER ***",
                                  "Your account needs attention",
                                  "Work less, earn more",
                                  "Loan approved - no questions asked",
                                  "f r e e   s a m p l e s",
                                  "Meet new friends tonight"};
constexpr std::array wantedSubjects{"Order confirmation", "Your order", "Invoice",         "Delivery note",
                                    "Minutes of Tuesday", "Quotation",  "Re: appointment", "Holiday plan",
                                    "Spare parts",        "Reminder"};
constexpr std::array spamSentences{"Act now, this offer ends tonight!",
                                   "More than ten thousand customers cannot be wrong.",
                                   "Simply reply with your bank details and we do the rest.",
                                   "No doctor, no waiting room, no questions.",
                                   "Our casino doubles your first payment at once.",
                                   "Imagine what you could buy with all that money.",
                                   "This is not spam; you asked for it on one of our pages.",
                                   "Genuine copies of the finest watches at a tenth of the price.",
                                   "Click below and see for yourself.",
                                   "You will never find a lower price, we promise."};
constexpr std::array wantedSentences{"Thank you for your order of last week.",
                                     "The parts leave our warehouse tomorrow morning.",
                                     "Please find the drawings attached.",
                                     "Could we move the meeting to Thursday at ten?",
                                     "The printer on the second floor is out of toner again.",
                                     "Two of the twelve boxes arrived damaged; I have told the carrier.",
                                     "Payment is due within thirty days without deduction.",
                                     "If anything is missing, just call me at the office.",
                                     "I have corrected the figures for the last quarter.",
                                     "Give my regards to your colleagues in the laboratory."};
constexpr std::array fileNames{"invoice.pdf", "price list.xls", "photo.jpg",
                               "details.zip", "drawing-7.dwg",  "offer.doc"};
constexpr std::array foreignFileNames{"Pr\u00fcfbericht M\u00e4rz.pdf", "d\u00e9tail de la facture.pdf",
                                      "\u0441\u0447\u0451\u0442.doc", "\u8acb\u6c42\u66f8.xls",
                                      "Angebot \u201eSommer\u201c \u2013 50 \u20ac g\u00fcnstiger.docx"};

/// Subject, sender and body in Base64, so that the bytes do not depend on the encoding of this file.
struct ForeignRow {
    const char* charset;
    const char* subject;
    const char* sender;
    const char* body;
};

constexpr std::array foreignRows{
    // Ihre Bestellung ist unterwegs – Grüße | Jürgen Weiß
    ForeignRow{"utf-8", "SWhyZSBCZXN0ZWxsdW5nIGlzdCB1bnRlcndlZ3Mg4oCTIEdyw7zDn2U=", "SsO8cmdlbiBXZWnDnw==",
               "R3V0ZW4gVGFnLA0KDQpJaHJlIEJlc3RlbGx1bmcgd3VyZGUgaGV1dGUgw7xiZXJnZWJlbi4gRGllIExpZWZlcnVuZyBkYXVl"
               "cnQgendlaSBiaXMgZHJlaSBUYWdlIOKAkyBncsO2w59lcmUgU3TDvGNrZSBrb21tZW4gc3DDpHRlci4NCg=="},
    // Żółta łódź za pół ceny | Łukasz Śliwa
    ForeignRow{"utf-8", "xbvDs8WCdGEgxYLDs2TFuiB6YSBww7PFgiBjZW55", "xYF1a2FzeiDFmmxpd2E=",
               "RHppZcWEIGRvYnJ5LA0KDQp0eWxrbyBkemnFmyB3c3p5c3RraWUgxYJvZHppZSBzxIUgdGHFhHN6ZSBvIHBvxYJvd8SZLiBQ"
               "cm9zesSZIHNpxJkgcG9zcGllc3p5xIcsIHpvc3RhxYJvIGp1xbwgbmlld2llbGUgc3p0dWsuDQo="},
    // Votre commande est prête | Hélène Lefèvre
    ForeignRow{"iso-8859-1", "Vm90cmUgY29tbWFuZGUgZXN0IHBy6nRl", "SOls6G5lIExlZuh2cmU=",
               "Qm9uam91ciwNCg0Kdm90cmUgY29tbWFuZGUgZXN0IHBy6nRlLiBWb3VzIHBvdXZleiBsYSBy6WN1cOlyZXIg4CBsJ2F0ZWxp"
               "ZXIgZOhzIGRlbWFpbiwgZGUgcHLpZulyZW5jZSBsJ2FwcuhzLW1pZGkuDQo="},
    // ¡Última oportunidad, señor! | José Muñoz
    ForeignRow{"iso-8859-1", "odpsdGltYSBvcG9ydHVuaWRhZCwgc2Xxb3Ih", "Sm9z6SBNdfFveg==",
               "SG9sYToNCg0KbWHxYW5hIHRlcm1pbmEgbGEgb2ZlcnRhIGRlbCBh8W8uIENvbiB1biBzb2xvIGNsaWMgcmVjaWJpcuEgZWwg"
               "Y2F04WxvZ28gZXNwYfFvbCBjb21wbGV0bywgc2luIG5pbmf6biBjb21wcm9taXNvLg0K"},
    // “Gratis” – nur 99 € für alles… | Büro Schröder
    ForeignRow{"windows-1252", "k0dyYXRpc5QgliBudXIgOTkggCBm/HIgYWxsZXOF", "QvxybyBTY2hy9mRlcg==",
               "U2VociBnZWVocnRlIERhbWVuIHVuZCBIZXJyZW4sDQoNCm51ciBoZXV0ZTogYWxsZXMgZvxyIDk5IIAgliCEb2huZSBIYWtl"
               "bpMuIEVpbmZhY2ggYW50d29ydGVuIHVuZCBtaXRtYWNoZW6FDQo="},
    // It’s yours — £500 voucher | The Voucher Desk™
    ForeignRow{"windows-1252", "SXSScyB5b3VycyCXIKM1MDAgdm91Y2hlcg==", "VGhlIFZvdWNoZXIgRGVza5k=",
               "RGVhciBjdXN0b21lciwNCg0KaXSScyB5b3VyIGx1Y2t5IGRheSCXIGEgk6M1MDAgdm91Y2hlcpQgd2FpdHMgZm9yIHlvdS4g"
               "RG9uknQgdGVsbCBhbnlvbmWFDQo="},
    // Выгодный кредит за один день | Отдел кредитов
    ForeignRow{"koi8-r", "99nHz8TO2cogy9LFxMnUINrBIM/Eyc4gxMXO2A==", "79TExcwgy9LFxMnUz9c=",
               "+sTSwdfT1NfVytTFIQ0KDQr0z8zYy88g08XHz8TO0Togy9LFxMnUIMLF2iDT0NLB18/LIMkg0M/S1d7J1MXMxcog2sEgz8TJ"
               "ziDExc7YLiDwz9rXz87J1MUgzsHNINDS0c3PINPFyt7B0y4NCg=="},
    // Счёт за март | Анна Петрова
    ForeignRow{"koi8-r", "896j1CDawSDNwdLU", "4c7OwSDwxdTSz9fB",
               "5M/C0tnKIMTFztgsDQoNCtfPINfMz9bFzsnJINPeo9Qg2sEgzcHS1C4g8M/WwczVytPUwSwg0M/E1NfF0sTJ1MUg0M/M1d7F"
               "zsnFIMTPIMvPzsPBIM7FxMXMyS4NCg=="},
    // 代开发票优惠 | 财务部
    ForeignRow{"gb2312", "tPq/qreixrHTxbvd", "ssbO8bK/",
               "xPq6wzoNCg0Ksb65q8u+v8nS1Mzhuam499bWt6LGsSy827jx08W73Sy7ttOtwLS159fJ0a+how0K"},
    // 会议通知 | 王小明
    ForeignRow{"gb2312", "u+HS6c2o1qo=", "zfXQocP3",
               "uPfOu82sysI6DQoNCrvh0um4xNTa0MfG2s7lz8LO58j9teMstdi147K7seQsx+vXvMqxss6806GjDQo="},
    // ご注文の確認 | 田中商店
    ForeignRow{"iso-2022-jp", "GyRCJDRDbUo4JE4zTkcnGyhC", "GyRCRURDZj4mRTkbKEI=",
               "GyRCJCQkRCRiJCIkaiQsJEgkJiQ0JDYkJCReJDkhIxsoQg0KDQobJEIkNENtSjgkTj4mSUokT0xARnxIL0F3JCQkPyQ3JF4k"
               "OSEjRk8kLyReJEc+LyQ3JCpCVCRBJC8kQCQ1JCQhIxsoQg0K"},
    // 今だけ無料プレゼント | 懸賞センター
    ForeignRow{"shift_jis", "jaGCvoKvlrOXv4N2g4yDW4OTg2c=", "jJyP3INag5ODXoFb",
               "gqiC34LFgsaCpIKygrSCooLcgrchDQoNCoKggsiCvYLNk8GVyo/cgsmTlpFJgrWC3IK1gr2BQo2hgreCrom6gsyDeYFbg1eC"
               "8IKyl5eCrYK+grOCooFCDQo="}};

QByteArray LowerName(Random& random) {
    const QByteArray firstName = random.Pick(firstNames);
    return firstName.toLower() + '.' + QByteArray(random.Pick(lastNames)).toLower();
}

} // namespace

QByteArray SpamSubject(Random& random) {
    const QByteArray subject = random.Pick(spamSubjects);
    return random.Chance(30) ? subject + " [" + QByteArray::number(random.Between(100, 99999)) + ']' : subject;
}

QByteArray WantedSubject(Random& random) {
    return QByteArray(random.Pick(wantedSubjects)) + " no. " + QByteArray::number(random.Between(1000, 9999));
}

ForeignText Foreign(Random& random) {
    const ForeignRow& row = random.Pick(foreignRows);
    return {row.charset, QByteArray::fromBase64(row.subject), QByteArray::fromBase64(row.sender),
            QByteArray::fromBase64(row.body)};
}

QByteArray Sentence(Random& random, bool spam) {
    return spam ? random.Pick(spamSentences) : random.Pick(wantedSentences);
}

QByteArray Paragraphs(Random& random, bool spam, qsizetype size) {
    QByteArray text;
    text.reserve(size + paragraphSize);
    qsizetype paragraphStart = 0;
    qsizetype lineStart = 0;
    do {
        text += Sentence(random, spam);
        if (text.size() - paragraphStart > paragraphSize) {
            text += "\r\n\r\n";
            paragraphStart = lineStart = text.size();
        } else if (text.size() - lineStart > lineLimit) {
            text += "\r\n";
            lineStart = text.size();
        } else {
            text += ' ';
        }
    } while (text.size() < size);
    return text + "\r\n";
}

QByteArray HtmlPage(Random& random, bool spam, qsizetype size) {
    QByteArray page = "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html\"></head>\r\n<body>\r\n";
    do {
        page += "<p style=\"color: #303030\">" + Sentence(random, spam) + "<br>\r\n";
        page += Sentence(random, spam) + "</p>\r\n";
    } while (page.size() < size);
    return page + "<p><a href=\"http://www.example.com/\">www.example.com</a></p>\r\n</body></html>\r\n";
}

QByteArray PersonName(Random& random) {
    const QByteArray firstName = random.Pick(firstNames);
    return firstName + ' ' + random.Pick(lastNames);
}

QByteArray SpamSender(Random& random) {
    const QByteArray word = random.Pick(spamWords);
    const QByteArray number = QByteArray::number(random.Between(1, 9999));
    return word + number + '@' + random.Pick(spamDomains);
}

QByteArray WantedSender(Random& random) {
    const QByteArray mailbox = random.Chance(50) ? QByteArray(random.Pick(mailboxes)) : LowerName(random);
    return mailbox + '@' + random.Pick(wantedDomains);
}

QByteArray Recipient(Random& random) {
    const QByteArray mailbox = random.Chance(30) ? QByteArray(random.Pick(mailboxes)) : LowerName(random);
    return mailbox + '@' + random.Pick(ownDomains);
}

QByteArray ForeignFileName(Random& random) {
    return random.Pick(foreignFileNames);
}

QByteArray FileName(Random& random) {
    return random.Pick(fileNames);
}

} // namespace quellbox::samples
