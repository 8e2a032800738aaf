#include "app/OverviewDesk.h"

#include "app/ActionDesk.h"
#include "app/ContentsPane.h"
#include "app/ExportDesk.h"
#include "app/ExportFile.h"
#include "app/ListDesk.h"
#include "app/MainMenus.h"
#include "app/MessageListView.h"
#include "app/WindowJobs.h"
#include "app/frmOverview.h"
#include "archive/RefreshTimer.h"
#include "history/Journal.h"
#include "history/JournalDatabase.h"
#include "mail/DisplayText.h"
#include "platform/RuntimeError.h"
#include "settings/frmPlacement.h"
#include "whitelist/ToleranceCandidates.h"
#include "whitelist/WhitelistStore.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>

namespace quellbox {

namespace {

constexpr int againAfterMs = 300;
constexpr size_t mostCandidates = 100;

QByteArray PngOf(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG")) {
        throw RuntimeError(QCoreApplication::translate("quellbox", "The picture could not be written as PNG."));
    }
    return bytes;
}

} // namespace

OverviewDesk::OverviewDesk(const WindowParts& parts, ListDesk& list, ActionDesk& actions, ExportDesk& exporting)
    : parts_(parts), list_(list), actions_(actions), exporting_(exporting), counter_(parts.ports.pool, parts.model) {
    again_.setSingleShot(true);
    again_.setInterval(againAfterMs);
    again_.callOnTimeout([this] { AskForUnblocked(); });
    connect(&parts_.journal, &Journal::Changed, this, [this] {
        if (window_ && window_->isVisible() && !again_.isActive()) {
            again_.start();
        }
    });
}

OverviewDesk::~OverviewDesk() = default;

void OverviewDesk::mnuToolsOverview_Click() {
    if (!window_) {
        MakeWindow();
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void OverviewDesk::MakeWindow() {
    window_ = std::make_unique<frmOverview>(&parts_.window);
    RestoreWindowPlacement(*window_, parts_.ports.store);
    connect(&counter_, &OverviewCounter::Counted, window_.get(), &frmOverview::ShowOverview);
    connect(window_.get(), &frmOverview::Opened, this, &OverviewDesk::Opened);
    connect(window_.get(), &frmOverview::Closed, this, parts_.errors.Guarded(this, &OverviewDesk::Closed));
    connect(window_.get(), &frmOverview::Chosen, this, parts_.errors.Guarded(this, &OverviewDesk::Select));
    connect(window_.get(), &frmOverview::SaveClick, this, parts_.errors.Guarded(this, &OverviewDesk::Save));
    connect(window_.get(), &frmOverview::TolerateClick, this, parts_.errors.Guarded(this, &OverviewDesk::Tolerate));
    connect(window_.get(), &frmOverview::TolerateGroupClick, this,
            parts_.errors.Guarded(this, &OverviewDesk::TolerateGroup));
    connect(&parts_.menus.Button("whitelist"), &QAction::enabledChanged, this, &OverviewDesk::ShowWhetherToTolerate);
    const QAction& bulk = parts_.menus.Entry("mnuViewBulk");
    connect(&bulk, &QAction::toggled, window_.get(), &frmOverview::ShowBulkMode);
    window_->ShowBulkMode(bulk.isChecked());
    ShowWhetherToTolerate();
}

// What opens the whitelist can be used together, and what the states of the commands say of its button holds here too.
void OverviewDesk::ShowWhetherToTolerate() {
    window_->OfferTolerating(
        parts_.menus.Button("whitelist").isEnabled(),
        parts_.state.TolerationLevel == 0
            ? tr("The whitelist is switched off. Tools > Options..., page Toleration, switches it on.")
            : tr("Something else is being done."));
}

void OverviewDesk::Opened() {
    counter_.SetActive(true);
    AskForUnblocked();
}

void OverviewDesk::Closed() {
    counter_.SetActive(false);
    again_.stop();
    if (parts_.ports.savesSettings) {
        SaveWindowPlacement(*window_, parts_.ports.store);
    }
}

void OverviewDesk::AskForUnblocked() {
    const auto find = [whitelist = LoadWhitelist(parts_.ports.store)](JournalDatabase& database) {
        return ToleranceCandidates(database.UnblockedSenders(), whitelist, mostCandidates);
    };
    parts_.journal.AskFor(Journal::Question::Reads, window_.get(), find,
                          [this](const std::vector<UnblockedSender>& senders) { window_->ShowUnblocked(senders); });
}

bool OverviewDesk::MakeWay() {
    const bool isFree = parts_.jobs.MakeWay();
    if (!isFree) {
        window_->Tell(tr("Something else is being done. Try again when it has ended."));
    }
    return isFree;
}

/// The rows in sight that belong to a group; none, and the user is told so, where ratings mean something else now than
/// in the pictures. Those are counted anew then.
std::optional<std::vector<int>> OverviewDesk::RowsOf(const MessageGroup& group) {
    const MessageListModel& model = parts_.model;
    if (model.RatesByNumber() != window_->RatesByNumber()) {
        window_->Tell(tr("The list is being counted anew. Try again in a moment."));
        return std::nullopt;
    }
    GroupMatcher matcher(group, model.RatesByNumber());
    std::vector<int> rows;
    for (int row = 0; row < model.Count(); ++row) {
        if (matcher.Holds(model.Row(row))) {
            rows.push_back(row);
        }
    }
    return rows;
}

// The contents are those of one message. The keys of the list are for the group as soon as its window is in front.
void OverviewDesk::Select(const MessageGroup& group, bool adds) {
    if (!MakeWay()) {
        return;
    }
    const std::optional<std::vector<int>> rows = RowsOf(group);
    if (!rows) {
        return;
    }
    if (!adds) {
        list_.ClearSelection();
    }
    if (!rows->empty()) {
        parts_.list.AddToSelection(*rows);
    }
    const int selected = list_.UpdateSelectionStatus();
    if (selected > 1) {
        parts_.contents.Clear();
    }
    parts_.list.setFocus();
    window_->Tell(selected == 1 ? tr("One message selected") : tr("%n messages selected", nullptr, selected));
}

// Behind the dialog no other job than a tick's look can begin, which is ended.
void OverviewDesk::Save(OverviewKind kind) {
    if (!MakeWay()) {
        return;
    }
    const RefreshTimer::Hold rest(parts_.timer);
    const QString day = parts_.ports.clock.Now().date().toString(Qt::ISODate);
    const QString file = AskExportFile(window_.get(), tr("%1 of %2", "a picture of a day").arg(TitleOf(kind), day),
                                       {{QStringLiteral("PNG"), QStringLiteral("png")},
                                        {QStringLiteral("SVG"), QStringLiteral("svg")},
                                        {QStringLiteral("CSV"), QStringLiteral("csv")}});
    if (!file.isEmpty() && parts_.jobs.EndRefresh()) {
        Write(file, kind);
    }
}

void OverviewDesk::Write(const QString& file, OverviewKind kind) {
    const OverviewPanel& panel = window_->Panel(kind);
    const auto written = [this, file] {
        window_->Tell(tr("Written to %1").arg(CleanseForDisplay(QDir::toNativeSeparators(file))));
    };
    if (file.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive)) {
        exporting_.Write(file, panel.Table().Columns(), CellsOf(panel.Table()), written);
    } else if (file.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive)) {
        exporting_.Write(
            file, [svg = panel.Chart().Svg()] { return svg; }, written);
    } else {
        exporting_.Write(
            file, [image = panel.Chart().Image()] { return PngOf(image); }, written);
    }
}

void OverviewDesk::Tolerate(const QStringList& senders) {
    if (MakeWay()) {
        actions_.TolerateSenders(senders, *window_);
    }
}

void OverviewDesk::TolerateGroup(const MessageGroup& group) {
    const std::optional<std::vector<int>> rows = MakeWay() ? RowsOf(group) : std::nullopt;
    if (!rows) {
        return;
    }
    QStringList senders;
    for (const int row : *rows) {
        senders.append(parts_.model.Row(row).Tag());
    }
    const QStringList candidates = SendersToTolerate(senders, LoadWhitelist(parts_.ports.store));
    if (candidates.isEmpty()) {
        window_->Tell(tr("None of these messages has a sender that could be added to the whitelist."));
        return;
    }
    actions_.TolerateSenders(candidates, *window_);
}

void OverviewDesk::Close() {
    if (window_) {
        window_->close();
    }
}

} // namespace quellbox
