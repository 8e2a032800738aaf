#pragma once

#include "messages/GroupKey.h"

#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace quellbox {

/// The pictures of what is listed.
enum class OverviewKind { Days, Levels, Senders, Recipients, Subjects };

constexpr std::array overviewKinds{OverviewKind::Days, OverviewKind::Levels, OverviewKind::Senders,
                                   OverviewKind::Recipients, OverviewKind::Subjects};

/// A part of a bar.
struct OverviewPart {
    qint64 count = 0;     ///< messages
    int series = -1;      ///< index into OverviewPicture::series; -1 where there is none
    MessageGroup group{}; ///< those messages

    bool operator==(const OverviewPart&) const = default;
};

/// A bar of a picture.
struct OverviewBar {
    QString label; ///< fit for display
    std::vector<OverviewPart> parts;
    MessageGroup group{}; ///< of all parts

    qint64 Count() const;
    bool operator==(const OverviewBar&) const = default;
};

/// What a picture shows. A day's bar has a part for each level of rating, in their order; every other bar has one part.
struct OverviewPicture {
    OverviewKind kind = OverviewKind::Days;
    QStringList series{}; ///< levels, from the lowest
    std::vector<OverviewBar> bars{};
    size_t leftOut = 0; ///< groups that have no bar

    bool operator==(const OverviewPicture&) const = default;
};

/// All pictures, in the order of overviewKinds, and how many messages they are of.
struct Overview {
    std::array<OverviewPicture, overviewKinds.size()> pictures{};
    qint64 count = 0;
    bool ratesByNumber = false;
    qint64 listed = 0; ///< messages in the list, in sight or not

    const OverviewPicture& Of(OverviewKind kind) const { return pictures[static_cast<size_t>(kind)]; }
};

/// Counts messages, as those of a list that has no others. Takes some milliseconds for 10,000 rows, and touches nothing
/// but them.
Overview CountOverview(const std::vector<MessageRow>& rows, bool ratesByNumber);

/// What stands above a picture, and above the column of its table that says of what the bars are.
QString TitleOf(OverviewKind kind);
QString GroupCaptionOf(OverviewKind kind);

} // namespace quellbox
