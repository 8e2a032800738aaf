#pragma once

#include "app/OverviewPanel.h"
#include "history/HistoryTypes.h"
#include "messages/Overview.h"

#include <QDialog>

#include <array>
#include <memory>

namespace Ui {
class frmOverview;
}

namespace quellbox {

/// The window with the pictures of what is listed, and with the senders whom to tolerate might spare work. It is not
/// modal: the work goes on beside it.
class frmOverview : public QDialog {
    Q_OBJECT

public:
    explicit frmOverview(QWidget* parent);
    ~frmOverview() override;

    void ShowOverview(const Overview& overview);
    void ShowUnblocked(const std::vector<UnblockedSender>& senders);

    /// Whether senders can be tolerated now; if not, `whyNot` says so.
    void OfferTolerating(bool isOffered, const QString& whyNot);

    /// Says that there are messages of which only the file is known, or nothing.
    void ShowBulkMode(bool isOn);

    /// Whether ratings are numbers for what is shown.
    bool RatesByNumber() const { return ratesByNumber_; }

    /// What became of what the user did here.
    void Tell(const QString& text);

    const OverviewPanel& Panel(OverviewKind kind) const { return *panels_[static_cast<size_t>(kind)]; }

Q_SIGNALS:
    /// The window is shown, or no longer: nobody looks at it.
    void Opened();
    void Closed();

    /// These messages are to be selected, besides those that are if `adds`.
    void Chosen(const MessageGroup& group, bool adds);

    void SaveClick(OverviewKind kind);

    /// These senders are to be tolerated.
    void TolerateClick(const QStringList& senders);

    /// Those of these messages are.
    void TolerateGroupClick(const MessageGroup& group);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void MakePanels();
    void PrepareList();
    void ListUnblocked();
    void ShowTolerating();
    QStringList SelectedSenders() const;

    std::unique_ptr<Ui::frmOverview> ui_;
    std::array<OverviewPanel*, overviewKinds.size()> panels_{};
    std::vector<UnblockedSender> unblocked_;
    QString toleratingTip_;
    QString whyNotTolerating_;
    bool offersTolerating_ = true;
    bool ratesByNumber_ = false;
};

} // namespace quellbox
