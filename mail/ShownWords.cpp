#include "mail/ShownWords.h"

#include <QSet>

#include <algorithm>

namespace quellbox {

namespace {

bool DividesWords(QChar character) {
    static const QString dividers =
        QStringLiteral(",;|()[]{}<>\"\u201C\u201D\u201E\u00AB\u00BB\u3001\uFF08\uFF09\uFF0C");
    return character.isSpace() || dividers.contains(character);
}

QString WithoutPunctuation(QString word) {
    const auto isInner = [](QChar character) { return character.isLetterOrNumber() || character == u'/'; };
    const auto last = std::find_if(word.rbegin(), word.rend(), isInner);
    word.truncate(word.rend() - last);
    const auto first = std::find_if(word.begin(), word.end(), isInner);
    return word.sliced(first - word.begin());
}

/// Words of two labels that are written in this way by themselves.
bool IsTitleOrProduct(const QString& word) {
    static const QSet<QString> known{
        QStringLiteral("m.sc"),    QStringLiteral("b.sc"),    QStringLiteral("m.ed"),      QStringLiteral("m.arch"),
        QStringLiteral("m.tech"),  QStringLiteral("b.tech"),  QStringLiteral("m.eng"),     QStringLiteral("b.eng"),
        QStringLiteral("m.law"),   QStringLiteral("dr.med"),  QStringLiteral("dr.ing"),    QStringLiteral("dr.phil"),
        QStringLiteral("dr.tech"), QStringLiteral("dr.law"),  QStringLiteral("st.gallen"), QStringLiteral("asp.net"),
        QStringLiteral("ado.net"), QStringLiteral("vb.net"),  QStringLiteral("ml.net"),    QStringLiteral("co.ltd"),
        QStringLiteral("pty.ltd"), QStringLiteral("pvt.ltd"), QStringLiteral("pte.ltd"),   QStringLiteral("co.kg")};
    // Before "Co.Ltd" the name of the firm may stand without a blank.
    return known.contains(word) || word.endsWith(QLatin1String(".co.ltd"));
}

/// Whether a name before an ending looks like that of a file, and not like a domain of that country.
bool LooksLikeFile(const QString& name) {
    static const QSet<QString> usual{
        QStringLiteral("readme"),       QStringLiteral("changelog"), QStringLiteral("license"),
        QStringLiteral("contributing"), QStringLiteral("main"),      QStringLiteral("index"),
        QStringLiteral("test"),         QStringLiteral("tests"),     QStringLiteral("lib"),
        QStringLiteral("mod"),          QStringLiteral("build"),     QStringLiteral("script"),
        QStringLiteral("install"),      QStringLiteral("setup"),     QStringLiteral("config"),
        QStringLiteral("run")};
    return usual.contains(name.toLower()) || name.contains(u'_') ||
           std::any_of(name.begin() + 1, name.end(), [](QChar character) { return character.isUpper(); });
}

bool IsFileName(const QString& word) {
    static const QSet<QString> ofFiles{QStringLiteral("sh"), QStringLiteral("py"), QStringLiteral("zip")};
    static const QSet<QString> alsoOfCountries{QStringLiteral("md"), QStringLiteral("pl"), QStringLiteral("rs")};
    const QString name = word.section(u'.', 0, 0);
    const QString ending = word.section(u'.', 1);
    return !name.isEmpty() && (ofFiles.contains(ending) || (alsoOfCountries.contains(ending) && LooksLikeFile(name)));
}

} // namespace

QStringList ShownWords(const QString& text) {
    constexpr qsizetype longest = 2000;
    QStringList words;
    QString word;
    for (const QChar character : text.left(longest) + u' ') {
        if (!DividesWords(character)) {
            word += character.category() == QChar::Other_Format ? QString() : QString(character);
            continue;
        }
        word = WithoutPunctuation(word);
        if (!word.isEmpty()) {
            words.append(word);
        }
        word.clear();
    }
    return words;
}

bool IsKnownAsNoDomain(const QString& word) {
    return IsTitleOrProduct(word.toLower()) || IsFileName(word);
}

} // namespace quellbox
