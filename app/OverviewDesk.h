#pragma once

#include "app/WindowParts.h"
#include "history/HistoryTypes.h"
#include "messages/OverviewCounter.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

namespace quellbox {

class ActionDesk;
class ExportDesk;
class ListDesk;
class frmOverview;

/// The overview of the list: pictures in a window of their own, which follow the list as long as they are shown, and
/// from which groups of messages are selected.
class OverviewDesk : public QObject {
    Q_OBJECT

public:
    OverviewDesk(const WindowParts& parts, ListDesk& list, ActionDesk& actions, ExportDesk& exporting);
    ~OverviewDesk() override;

    void mnuToolsOverview_Click();

    void Close();

private:
    void MakeWindow();
    void Opened();
    void Closed();
    void AskForUnblocked();
    void Select(const MessageGroup& group, bool adds);
    void Save(OverviewKind kind);
    void Write(const QString& file, OverviewKind kind);
    void Tolerate(const QStringList& senders);
    void TolerateGroup(const MessageGroup& group);
    void ShowWhetherToTolerate();
    std::optional<std::vector<int>> RowsOf(const MessageGroup& group);
    bool MakeWay();

    WindowParts parts_;
    ListDesk& list_;
    ActionDesk& actions_;
    ExportDesk& exporting_;
    OverviewCounter counter_;
    QTimer again_; // asks the history, which changes all the time while an action runs
    std::unique_ptr<frmOverview> window_;
};

} // namespace quellbox
