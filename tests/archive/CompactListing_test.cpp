#include "archive/CompactListing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>

namespace quellbox {

using namespace Qt::StringLiterals;

namespace {

QStringList NamesIn(const CompactListing& listing) {
    QStringList names;
    for (size_t file = 0; file < listing.Count(); ++file) {
        names.append(listing.NameAt(file));
    }
    return names;
}

/// Names that begin alike, of characters around the end of Latin-1 and of surrogates.
QString RandomName(std::mt19937& random) {
    constexpr std::array<char16_t, 8> units{u'A',      u'a',      u'\x00E9', u'\x00FF',
                                            u'\x0100', u'\xD800', u'\xDC00', u'\xFFFD'};
    QString name;
    for (auto length = random() % 5; length > 0; --length) {
        name += QChar(units[random() % units.size()]);
    }
    return name;
}

} // namespace

TEST(CompactListing, GivesBackNamesSizesAndTimes) {
    CompactListing listing;
    const QStringList names{u"a.EML"_s,
                            u""_s,
                            u"gr\u00FC\u00DFe"_s,
                            u"\u0416.eml"_s,
                            u"odd"_s,
                            u"\U0001F600"_s,
                            QString::fromUtf16(u"bad\uFFFDFC")};
    for (qsizetype file = 0; file < names.size(); ++file) {
        listing.Add(names[file], FileStatus{file * 5'000'000'000, file - 3});
    }
    ASSERT_EQ(listing.Count(), 7U);
    EXPECT_EQ(NamesIn(listing), names);
    for (qsizetype file = 0; file < names.size(); ++file) {
        const FileEntry entry = listing.At(static_cast<size_t>(file));
        EXPECT_EQ(entry.name, names[file]);
        EXPECT_EQ(entry.status, (FileStatus{file * 5'000'000'000, file - 3}));
        EXPECT_EQ(listing.StatusAt(static_cast<size_t>(file)), entry.status);
    }
}

TEST(CompactListing, KeepsNamesAroundTheEndsOfItsPieces) {
    CompactListing listing;
    QStringList names;
    for (int file = 0; file < 3000; ++file) {
        names += QString(700 + file % 7, QChar(file % 3 == 0 ? u'\x0416' : u'x')) + QString::number(file);
        listing.Add(names.back(), FileStatus{1, file});
    }
    for (const qsizetype length : {(1 << 20) - 1, 1 << 20, (1 << 20) + 1}) {
        names += QString(length, u'n');
        names += QString(length, u'\x0416');
        names += u"short"_s;
        for (qsizetype file = names.size() - 3; file < names.size(); ++file) {
            listing.Add(names[file], FileStatus{1, 5000 + file});
        }
    }
    EXPECT_EQ(NamesIn(listing), names);
    listing.Sort();
    EXPECT_EQ(NamesIn(listing), names) << "which came in this order";
}

TEST(CompactListing, RefusesANameThatNoSystemHas) {
    CompactListing listing;
    const QString longest((1 << 21) - 1, u'n');
    listing.Add(longest, FileStatus{1, 1});
    EXPECT_EQ(listing.NameAt(0), longest);
    EXPECT_THROW(listing.Add(longest + u'n', FileStatus{1, 1}), std::length_error);
    EXPECT_EQ(listing.Count(), 1U);
}

TEST(CompactListing, SortsAsAnyListingDoes) {
    std::mt19937 random(4711);
    CompactListing listing;
    std::vector<FileEntry> expected;
    for (int file = 0; file < 5000; ++file) {
        const FileEntry entry{RandomName(random), {1, static_cast<qint64>(random() % 7) - 3}};
        expected.push_back(entry);
        listing.Add(entry.name, entry.status);
    }
    std::sort(expected.begin(), expected.end(), [](const FileEntry& left, const FileEntry& right) {
        return left.status.modifiedNs != right.status.modifiedNs ? left.status.modifiedNs < right.status.modifiedNs
                                                                 : left.name < right.name;
    });
    listing.Sort();
    ASSERT_EQ(listing.Count(), expected.size());
    for (size_t file = 0; file < expected.size(); ++file) {
        ASSERT_EQ(listing.NameAt(file), expected[file].name) << file;
        ASSERT_EQ(listing.StatusAt(file), expected[file].status) << file;
    }
}

TEST(CompactListing, TakesAStatusLaterAndDropsWhatGetsNone) {
    CompactListing listing;
    listing.Add(u"known"_s, FileStatus{0, 0});
    listing.Add(u"vanished"_s, std::nullopt);
    listing.Add(u"late"_s, std::nullopt);
    listing.Add(u"untold"_s, std::nullopt);
    ASSERT_EQ(listing.PutUnknownFirst(), 3U);
    EXPECT_EQ(listing.NameAt(3), u"known"_s);
    for (size_t file = 0; file < 3; ++file) {
        if (listing.NameAt(file) == u"late"_s) {
            listing.SetStatus(file, FileStatus{7, -1});
        } else if (listing.NameAt(file) == u"vanished"_s) {
            listing.SetStatus(file, std::nullopt);
        }
    }
    listing.Sort();
    EXPECT_EQ(NamesIn(listing), (QStringList{u"late"_s, u"known"_s}));
    EXPECT_EQ(listing.StatusAt(0), (FileStatus{7, -1}));
    EXPECT_EQ(listing.PutUnknownFirst(), 0U);
}

TEST(CompactListing, DropsWhatIsNotWanted) {
    CompactListing listing;
    for (int file = 0; file < 10; ++file) {
        listing.Add(QString::number(file), FileStatus{file, -file});
    }
    listing.Add(u"gone"_s, std::nullopt);
    listing.Sort([](const FileEntry& file) {
        EXPECT_EQ(file.name, QString::number(file.status.size)) << "nobody is asked about one that has vanished";
        return file.status.size % 4 == 1;
    });
    EXPECT_EQ(NamesIn(listing), (QStringList{u"9"_s, u"5"_s, u"1"_s}));
}

} // namespace quellbox
