#include "mail/HtmlText.h"

#include <gtest/gtest.h>

using namespace quellbox;

namespace {

QString TextOf(const QByteArray& page, QByteArrayView charset = "utf-8") {
    LinkNumbers numbers;
    return ReadHtml(page, charset, numbers).text;
}

struct PageCase {
    const char* page;
    const char* text;
};

void ExpectTexts(std::initializer_list<PageCase> cases) {
    for (const PageCase& each : cases) {
        EXPECT_EQ(TextOf(each.page).toStdString(), each.text) << each.page;
    }
}

} // namespace

TEST(HtmlText, PutsParagraphsAndHeadingsInLines) {
    ExpectTexts({{"<p>One\n two<p>three", "One two\n\nthree\n"},
                 {"<h1>Big</h1>text<h3>Small</h3>", "# Big\n\ntext\n\n### Small\n"},
                 {"<h2></h2>text", "text\n"},
                 {"a<br>b<br><br><br>c", "a\nb\n\nc\n"},
                 {"<div>a</div><div><div>b</div></div>", "a\nb\n"},
                 {"a<hr>b", "a\n----------\nb\n"},
                 {"<p>&nbsp;</p><p>x</p>", "x\n"},
                 {"", ""}});
}

TEST(HtmlText, KeepsTextBehindTheEndOfThePage) {
    ExpectTexts({{"<html><body><p>in</p></body></html><p>behind</p>", "in\n\nbehind\n"},
                 {"<div>a</div></div></div></table>b", "a\nb\n"}});
}

TEST(HtmlText, IndentsAndNumbersLists) {
    ExpectTexts({{"<ul><li>a<li>b</ul>c", "* a\n* b\n\nc\n"},
                 {"<ol start=3><li>a<li>b</ol>", "3. a\n4. b\n"},
                 {"<ul><li>a<ul><li>b</ul><li>c</ul>", "* a\n  * b\n* c\n"},
                 {"<ul><li><p>a</p></li><li>b<br>c</li></ul>", "* a\n\n* b\n  c\n"}});
}

TEST(HtmlText, PutsTheCellsOfASimpleRowOnOneLine) {
    ExpectTexts({{"<table><tr><td>a<td>b<tr><td>c<td>d</table>", "a | b\nc | d\n"},
                 {"<table><tr><td><p>a</p></td><td><div>b</div></td></tr></table>", "a | b\n"},
                 {"<table><tr><td>&nbsp;</td><td>b</td></tr></table>", "b\n"},
                 {"<table><tr><td><p>a<p>b</td><td>c</td></tr></table>", "a\n\nb\n\nc\n"},
                 {"<table><tr><td><table><tr><td>a</tr><tr><td>b</tr></table><td>c</table>", "a\nb\nc\n"}});
}

TEST(HtmlText, MarksQuotesAndKeepsPreformattedText) {
    ExpectTexts({{"a<blockquote>b<blockquote>c</blockquote></blockquote>d", "a\n\n> b\n>\n> > c\n\nd\n"},
                 {"<pre>x  y\n  z\n</pre>e", "x  y\n  z\n\ne\n"},
                 {"<p style='white-space: pre-wrap'>x  y\nz</p>", "x  y\nz\n"}});
}

TEST(HtmlText, NumbersLinksByTheirPlaces) {
    LinkNumbers numbers;
    const HtmlText page =
        ReadHtml("<a href='http://a.example/'>Click <b>here</b></a>, <a href=http://b.example>there</a>, "
                 "<a href=' http://a.exam\nple/ '>again</a>, <a href='#top'>top</a>, <a>none</a>",
                 "utf-8", numbers);
    EXPECT_EQ(page.text, QStringLiteral("Click here [1], there [2], again [1], top, none\n"));
    EXPECT_EQ(numbers.Targets(),
              QStringList({QStringLiteral("http://a.example/"), QStringLiteral("http://b.example")}));
    ASSERT_EQ(page.links.size(), 3U);
    EXPECT_EQ(page.links[0].text, QStringLiteral("Click here"));
}

TEST(HtmlText, ResolvesLinksAgainstTheBaseOfThePage) {
    LinkNumbers numbers;
    ReadHtml("<base href='http://evil.example/x/'><a href='y?z'>l</a><a href='mailto:a@b.example'>m</a>", "", numbers);
    EXPECT_EQ(numbers.Targets(),
              QStringList({QStringLiteral("http://evil.example/x/y?z"), QStringLiteral("mailto:a@b.example")}));
}

TEST(HtmlText, ResolvesLinksAsBrowsersDo) {
    struct BaseCase {
        const char* base;
        const char* link;
        const char* place;
    };
    for (const BaseCase& each :
         std::initializer_list<BaseCase>{{"https://bank.de/", "\\\\evil.net/x", "https://evil.net/x"},
                                         {"https://bank.de/", "/\\evil.net/x", "https://evil.net/x"},
                                         {"https://bank.de/", "///evil.net/x", "https://evil.net/x"},
                                         {"https://bank.de/", "https:\\\\evil.net", "https://evil.net"},
                                         {"https://bank.de/", "https:x", "https://bank.de/x"},
                                         {"https://bank.de/", "http:evil.net", "http:evil.net"},
                                         {"https://bank.de/a/b?c/d#e", "x", "https://bank.de/a/x"},
                                         {"https://bank.de/a/b?c", "?x", "https://bank.de/a/b?x"},
                                         {"https://bank.de/a/b", "/x", "https://bank.de/x"},
                                         {"https://bank.de", "x", "https://bank.de/x"},
                                         {"HTTPS:\\\\evil.net\\a\\b", "x", "https://evil.net/a/x"},
                                         {"//evil.net/a", "x", "//evil.net/x"},
                                         {"data:text/html,x", "y", "y"},
                                         {"nothing", "y", "y"}}) {
        LinkNumbers numbers;
        ReadHtml(QByteArray("<base target=x><base href='") + each.base +
                     "'><base href='https://second.example'><a href='" + each.link + "'>l</a>",
                 "", numbers);
        EXPECT_EQ(numbers.Targets(), QStringList(QString::fromLatin1(each.place))) << each.base << " " << each.link;
    }
}

TEST(HtmlText, NumbersOnlyWhatCanBeClickedOn) {
    LinkNumbers numbers;
    ReadHtml("<a href=a></a><a href=b> </a><a href=c><img src=x></a><a href=d style='display:none'>t</a><map><area "
             "href=e></map>",
             "", numbers);
    EXPECT_EQ(numbers.Targets(), QStringList({QStringLiteral("c"), QStringLiteral("d"), QStringLiteral("e")}));
}

TEST(HtmlText, ShowsWhatStandsInForAnObject) {
    ExpectTexts({{"<object data=x>a <a href=l>b</a></object>", "a b [1]\n"},
                 {"<applet>a</applet><xml>b</xml><math>c</math>", "abc\n"},
                 {"<svg><title>t</title><a xlink:href=l><text>d</text></a></svg>", "d [1]\n"}});
}

TEST(HtmlText, ShowsWhatPicturesAndFormsSay) {
    ExpectTexts({{"<img alt='A [cat]'><img src=x><img alt=''>", "[picture: A (cat)]\n"},
                 {"<a href=x><img alt=Buy></a>", "[picture: Buy] [1]\n"},
                 {"<form action=http://x.example><input type=password><input type=submit value=Go></form>",
                  "[a field for a password] [button: Go]\n[a form that is sent to [1]]\n"}});
}

TEST(HtmlText, DropsScriptsStylesAndComments) {
    ExpectTexts({{"a<script>if (x < 1) b</script><style>p {}</style><!-- c --><title>d</title>e", "ae\n"},
                 {"a<!--[if mso]><p>outlook</p><![endif]-->b", "ab\n"},
                 {"a<![if !mso]>b<![endif]>c", "a b c\n"}});
}

TEST(HtmlText, MarksWhatAPageHides) {
    for (const char* style : {"display:none",
                              "DISPLAY : NONE !important",
                              "visibility:hidden",
                              "font-size:0",
                              "font-size:1px",
                              "font-size:2px",
                              "font-size:1.5pt",
                              "font-size:0.1em",
                              "opacity:0",
                              "color:#fff",
                              "color:#fefefe",
                              "color:white",
                              "color:rgb(255, 255, 255)",
                              "color:rgba(0,0,0,0)",
                              "color:transparent",
                              "position:absolute;left:-9999px",
                              "text-indent:-5000px",
                              "max-height:0",
                              "height:0;overflow:hidden",
                              "mso-hide:all",
                              "background:#123456;color:#133557"}) {
        EXPECT_EQ(TextOf(QByteArray("a <span style='") + style + "'>secret</span> b"),
                  QStringLiteral("a [hidden text: secret] b\n"))
            << style;
    }
    ExpectTexts({{"a <p hidden>secret</p> b", "a\n\n[hidden text: secret] b\n"},
                 {"<body bgcolor=black text=white><font color='#000000'>x]y</font> z", "[hidden text: x)y] z\n"},
                 {"<div style='display:none'><p style='display:block'>s</p></div>", "[hidden text: s]\n"}});
    EXPECT_EQ(TextOf("<p style='display:none'>" + QByteArray("&zwnj;&nbsp;&#8203; ").repeated(1000) + "secret</p>"),
              QStringLiteral("[hidden text: secret]\n"));
}

TEST(HtmlText, DoesNotMarkWhatCanBeRead) {
    for (const char* style :
         {"display:block", "visibility:visible", "font-size:3px", "font-size:80%", "opacity:0.5", "color:#ccc",
          "color:#fff;background:#000", "color:#fff;background:url(dark.png)", "text-indent:-20px", "height:0",
          "max-height:10px", "color:nonsense", "margin-left:-20px"}) {
        EXPECT_EQ(TextOf(QByteArray("<span style='") + style + "'>text</span>"), QStringLiteral("text\n")) << style;
    }
    ExpectTexts({{"<td style='font-size:0'><span style='font-size:14px'>text</span></td>", "text\n"},
                 {"<div style='visibility:hidden'><b style='visibility:visible'>text</b></div>", "text\n"},
                 {"<table bgcolor=#000000><tr><td><font color=white>text</font></table>", "text\n"},
                 {"<span style='display:none'>&nbsp;&zwnj;&#847; </span>text", "text\n"}});
}

TEST(HtmlText, FollowsSimpleRulesOfAStyleSheet) {
    const QByteArray sheet = "<style>/* x */ .gone, #id {display:none} b {font-size:1px} p.white {color:#ffffff}\n"
                             "@media screen { .seen {display:none} } .dark td {background:#000}</style>";
    const auto textOf = [&sheet](const char* page) { return TextOf(sheet + page); };
    EXPECT_EQ(textOf("<i class='x gone'>s</i>"), QStringLiteral("[hidden text: s]\n"));
    EXPECT_EQ(textOf("<i id=id>s</i>"), QStringLiteral("[hidden text: s]\n"));
    EXPECT_EQ(textOf("<b>s</b>"), QStringLiteral("[hidden text: s]\n"));
    EXPECT_EQ(textOf("<p class=white>s</p>"), QStringLiteral("[hidden text: s]\n"));
    EXPECT_EQ(textOf("<i class=white>s</i>"), QStringLiteral("s\n"));
    EXPECT_EQ(textOf("<i class=seen>s</i>"), QStringLiteral("[hidden text: s]\n"));
    EXPECT_EQ(textOf("<b style='font-size:12px'>s</b>"), QStringLiteral("s\n"));
    EXPECT_EQ(textOf("<table class=dark><tr><td style='color:white'>s</table>"), QStringLiteral("s\n"));
}

TEST(HtmlText, FollowsFurtherRulesOfAStyleSheet) {
    const auto textOf = [](const QByteArray& sheet, const QByteArray& page) {
        return TextOf("<style>" + sheet + "</style>" + page);
    };
    const QString hidden = QStringLiteral("[hidden text: s]\n");
    const QString seen = QStringLiteral("s\n");
    EXPECT_EQ(textOf("* {color:white}", "<i>s</i>"), hidden);
    EXPECT_EQ(textOf("*.g {color:white}", "<i class=g>s</i>"), hidden);
    EXPECT_EQ(textOf("@media all { i {display:none} }", "<i>s</i>"), hidden);
    EXPECT_EQ(textOf("@media print, only screen { i {display:none} }", "<i>s</i>"), hidden);
    EXPECT_EQ(textOf("@media print { i {display:none} }", "<i>s</i>"), seen);
    EXPECT_EQ(textOf("@media screen and (max-width:600px) { i {display:none} }", "<i>s</i>"), seen);
    EXPECT_EQ(textOf("i.a.b {display:none}", "<i class='b c a'>s</i>"), hidden);
    EXPECT_EQ(textOf("i.a.b {display:none}", "<i class='b c'>s</i>"), seen);
    EXPECT_EQ(textOf("i#x.b {display:none}", "<i id=x class=b>s</i>"), hidden);
    EXPECT_EQ(textOf("html body i {display:none}", "<i>s</i>"), hidden);
    EXPECT_EQ(textOf("div i {color:black}", "<i style='color:white'>s</i>"), hidden);
    EXPECT_EQ(textOf("div i {background:url(x)}", "<i style='color:white'>s</i>"), seen);
    EXPECT_EQ(textOf("div i {background:black}", "<i style='color:white'>s</i>"), seen);
}

TEST(HtmlText, FollowsAStyleSheetBehindTheText) {
    LinkNumbers numbers;
    const HtmlText page = ReadHtml("<a href=l>t</a> <i class=g>s</i><style>.g {display:none}</style>", "", numbers);
    EXPECT_EQ(page.text, QStringLiteral("t [1] [hidden text: s]\n"));
    EXPECT_EQ(page.links.size(), 1U);
}

TEST(HtmlText, KnowsTheBackgroundWhereNoneIsDeclared) {
    const QString hidden = QStringLiteral("[hidden text: s]\n");
    EXPECT_EQ(TextOf("<body background=''><font color=white>s"), hidden);
    EXPECT_EQ(TextOf("<body background=' ' bgcolor=''><font color=white>s"), hidden);
    EXPECT_EQ(TextOf("<body background=x.png><font color=white>s"), QStringLiteral("s\n"));
    for (const char* style :
         {"background:none", "background:transparent", "background-image:none", "background:url()",
          "background:nonsense", "background:white none", "background-image:url()", "color:white;color:nonsense"}) {
        EXPECT_EQ(TextOf(QByteArray("<p style='color:white;") + style + "'>s"), hidden) << style;
    }
}

TEST(HtmlText, ReadsColorsInAllTheirForms) {
    for (const char* color :
         {"#fffa", "#ffff", "hsl(0, 0%, 100%)", "hsla(120deg 100% 99% / 1)", "hsl(0,0%,0%,0)", "#0000",
          "lightgoldenrodyellow;background:#fafad2", "oldlace;background:#fdf5e6", "hsl(120,100%,50%);background:lime",
          "hsl(-120,100%,50%);background:blue", "hsl(0.5turn,100%,50%);background:aqua", "rebeccapurple;color:#fff"}) {
        EXPECT_EQ(TextOf(QByteArray("<p style='color:") + color + "'>s"), QStringLiteral("[hidden text: s]\n"))
            << color;
    }
    for (const char* color : {"#000f", "hsl(240,100%,50%)", "hsl(0)", "papayawhip;background:#000"}) {
        EXPECT_EQ(TextOf(QByteArray("<p style='color:") + color + "'>s"), QStringLiteral("s\n")) << color;
    }
}

TEST(HtmlText, DecodesByTheDeclaredCharacterSetOrThePageItself) {
    EXPECT_EQ(TextOf("Gr\xFC\xDF"
                     "e",
                     "iso-8859-1"),
              QStringLiteral("Grüße\n"));
    EXPECT_EQ(TextOf("<meta charset=koi8-r>\xC4\xC1", ""), QStringLiteral("да\n"));
    EXPECT_EQ(TextOf("<meta http-equiv=Content-Type content='text/html; charset=koi8-r'>\xC4\xC1", ""),
              QStringLiteral("да\n"));
    EXPECT_EQ(TextOf("<meta charset=koi8-r>\xC3\xA4", "utf-8"), QStringLiteral("ä\n"));
    EXPECT_EQ(TextOf("<meta charset=utf-16>\xC3\xA4", ""), QStringLiteral("ä\n"));
    EXPECT_EQ(TextOf(QByteArray("a\0b", 3)), QStringLiteral("a b\n"));
}

TEST(HtmlText, ResolvesEntitiesAndPassesBrokenOnes) {
    ExpectTexts({{"&lt;b&gt; &amp;amp; &#x41;&#66; &euro;", "<b> &amp; AB €\n"},
                 {"&unknown; a & b &#; &#xZ;", "&unknown; a & b Z;\n"},
                 {"<!DOCTYPE x [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><p>&e;</p>", "]>\n\n&e;\n"}});
}

TEST(HtmlText, FindsTheEndOfATagWithQuotesAcrossPieces) {
    // The parser is fed in pieces, and loses a quote that is open where one ends.
    QByteArray page;
    for (int i = 0; i < 200; ++i) {
        page += "<a title='" + QByteArray(5000, 'y') + " > " + QByteArray(3000, 'z') + "' href=x>l</a>\n";
    }
    EXPECT_EQ(TextOf(page).count(QStringLiteral("l [1]")), 200);
}

TEST(HtmlText, CutsWhatWouldTakeTooLong) {
    LinkNumbers numbers;
    const HtmlText nested = ReadHtml(QByteArray("<div>").repeated(100'000) + "x", "", numbers);
    EXPECT_TRUE(nested.isCut);
    const HtmlText unmatched =
        ReadHtml("<b>seen" + QByteArray("<div>").repeated(10'000) + QByteArray("</b>").repeated(100'000), "", numbers);
    EXPECT_TRUE(unmatched.isCut);
    EXPECT_EQ(unmatched.text, QStringLiteral("seen\n"));
    QByteArray attributes = "<p ";
    for (int i = 0; i < 50'000; ++i) {
        attributes += "a" + QByteArray::number(i) + "=1 ";
    }
    EXPECT_TRUE(ReadHtml(attributes + ">x", "", numbers).isCut);
    const QByteArray longName(90, 'n');
    EXPECT_TRUE(
        ReadHtml(("<" + longName + ">").repeated(5'000) + ("</" + longName + "x>").repeated(20'000), "", numbers)
            .isCut);
    EXPECT_TRUE(ReadHtml(QByteArray("&bogus ").repeated(2'000'000), "", numbers).isCut);
}

TEST(HtmlText, ShowsWhatStandsBeforeTheCut) {
    LinkNumbers numbers;
    const HtmlText cut = ReadHtml("seen" + QByteArray("&bogus ").repeated(2'000'000), "", numbers);
    EXPECT_TRUE(cut.isCut);
    EXPECT_EQ(cut.text.left(12), QStringLiteral("seen&bogus &"));
}

TEST(HtmlText, PassesOverSectionsAndRulesInTimeThatGrowsWithThem) {
    EXPECT_EQ(TextOf("a" + QByteArray("<![").repeated(2'000'000) + "-->b").count(QLatin1Char('a')), 1);
    EXPECT_EQ(TextOf("<style>" + QByteArray("@a;").repeated(100'000) + QByteArray(200'000, ' ') + "{</style>b"),
              QStringLiteral("b\n"));
    EXPECT_EQ(TextOf("<style>@import 'x'; @charset 'y'; .g {display:none}</style><i class=g>b</i>"),
              QStringLiteral("[hidden text: b]\n"));
}

TEST(HtmlText, ReadsAMillionTagsAndALongText) {
    LinkNumbers numbers;
    const HtmlText tags = ReadHtml(QByteArray("<b>x</b>").repeated(500'000), "", numbers);
    EXPECT_FALSE(tags.isCut);
    EXPECT_EQ(tags.text.size(), 500'001);
    const HtmlText words = ReadHtml(QByteArray("word ").repeated(100'000), "", numbers);
    EXPECT_FALSE(words.isCut);
    EXPECT_EQ(words.text.size(), 500'000);
}
