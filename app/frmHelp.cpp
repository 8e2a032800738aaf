#include "app/frmHelp.h"

#include "app/HelpBrowser.h"
#include "settings/frmPlacement.h"
#include "ui_frmHelp.h"

#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QShortcut>
#include <QTextDocumentFragment>
#include <QTreeWidgetItemIterator>

#include <algorithm>

namespace quellbox {

namespace {

constexpr int topicRole = Qt::UserRole;    // file name
constexpr int textRole = Qt::UserRole + 1; // everything that can be read in the topic, for the search
constexpr int smallestZoom = -4;
constexpr int largestZoom = 20;

QStringList Words(const QString& text) {
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool HasEveryWord(const QString& text, const QStringList& words) {
    return std::all_of(words.cbegin(), words.cend(),
                       [&text](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

std::vector<QTreeWidgetItem*> ItemsOf(QTreeWidget* tree) {
    std::vector<QTreeWidgetItem*> items;
    for (QTreeWidgetItemIterator item(tree); *item != nullptr; ++item) {
        items.push_back(*item);
    }
    return items;
}

} // namespace

frmHelp::frmHelp(const Shell& shell, SettingsStore& store, std::function<void(const QString&)> report)
    : QWidget(nullptr, Qt::Window), shell_(shell), store_(store), report_(std::move(report)), ui_(new Ui::frmHelp),
      project_(ReadHelpProject(ReadHelpFile(QStringLiteral("Quellbox.hhp")))) {
    ui_->setupUi(this);
    setAttribute(Qt::WA_QuitOnClose, false); // the main window may be hidden, but it is still there
    setWindowIcon(QIcon(QStringLiteral(":/icons/quellbox.svg")));
    ui_->splHelp->setStretchFactor(1, 1);
    ui_->splHelp->setCollapsible(1, false);
    FillContents();
    ConnectControls();
    RestoreWindowPlacement(*this, store_);
}

frmHelp::~frmHelp() = default;

void frmHelp::FillContents() {
    std::vector<QTreeWidgetItem*> path; // the entry last added of each level
    for (const HelpEntry& entry : ReadHelpContents(ReadHelpFile(QStringLiteral("Quellbox.hhc")))) {
        path.resize(std::min(path.size(), static_cast<size_t>(entry.level)));
        auto* item = path.empty() ? new QTreeWidgetItem(ui_->trvContents) : new QTreeWidgetItem(path.back());
        item->setText(0, entry.title);
        item->setToolTip(0, entry.title);
        item->setData(0, topicRole, entry.topic);
        const QString html = ReadHelpFile(entry.topic.section(QLatin1Char('#'), 0, 0));
        item->setData(0, textRole,
                      QString(entry.title + QLatin1Char(' ') + QTextDocumentFragment::fromHtml(html).toPlainText()));
        path.push_back(item);
    }
    ui_->trvContents->expandAll();
}

void frmHelp::ConnectControls() {
    HelpBrowser* topic = ui_->txtTopic;
    connect(topic, &QTextBrowser::anchorClicked, this, &frmHelp::txtTopic_LinkClick);
    connect(topic, &QTextBrowser::sourceChanged, this, &frmHelp::txtTopic_SourceChanged);
    connect(topic, &QTextBrowser::backwardAvailable, ui_->btnBack, &QWidget::setEnabled);
    connect(topic, &QTextBrowser::forwardAvailable, ui_->btnForward, &QWidget::setEnabled);
    connect(ui_->btnBack, &QAbstractButton::clicked, topic, &QTextBrowser::backward);
    connect(ui_->btnForward, &QAbstractButton::clicked, topic, &QTextBrowser::forward);
    connect(ui_->btnSmaller, &QAbstractButton::clicked, this, [this] { Zoom(-1); });
    connect(ui_->btnLarger, &QAbstractButton::clicked, this, [this] { Zoom(1); });
    connect(ui_->trvContents, &QTreeWidget::currentItemChanged, this, &frmHelp::trvContents_Click);
    connect(ui_->txtSearch, &QLineEdit::textChanged, this, &frmHelp::txtSearch_Change);
    connect(ui_->txtSearch, &QLineEdit::returnPressed, this, &frmHelp::txtSearch_Return);

    const auto on = [this](const QList<QKeySequence>& keys, auto handler) {
        for (const QKeySequence& key : keys) {
            connect(new QShortcut(key, this), &QShortcut::activated, this, handler);
        }
    };
    on({QKeySequence(QStringLiteral("Alt+Left"))}, [topic] { topic->backward(); });
    on({QKeySequence(QStringLiteral("Alt+Right"))}, [topic] { topic->forward(); });
    on({QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))}, [this] { Zoom(1); });
    on({QKeySequence(QStringLiteral("Ctrl+-"))}, [this] { Zoom(-1); });
    on({QKeySequence(QStringLiteral("Ctrl+0"))}, [this] { Zoom(-zoom_); });
    on({QKeySequence(QStringLiteral("Ctrl+F"))}, [this] {
        ui_->txtSearch->setFocus();
        ui_->txtSearch->selectAll();
    });
}

void frmHelp::ShowTopic(const QString& topic) {
    if (ReadHelpFile(topic.section(QLatin1Char('#'), 0, 0)).isNull()) {
        report_(tr("The help of this program has no topic \"%1\".").arg(topic));
        return;
    }
    ui_->txtTopic->setSource(HelpTopicUrl(topic));
    if (isMinimized()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    show();
    raise();
    activateWindow();
    ui_->txtTopic->setFocus();
}

void frmHelp::ShowDefaultTopic() {
    ShowTopic(project_.defaultTopic);
}

void frmHelp::ShowContext(int id) {
    if (!project_.contexts.contains(id)) {
        report_(tr("The help of this program has no topic number %1.").arg(id));
        return;
    }
    ShowTopic(project_.contexts[id]);
}

void frmHelp::closeEvent(QCloseEvent* event) {
    SaveWindowPlacement(*this, store_);
    QWidget::closeEvent(event);
}

void frmHelp::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel)) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void frmHelp::Zoom(int steps) {
    const int wanted = std::clamp(zoom_ + steps, smallestZoom, largestZoom);
    ui_->txtTopic->zoomIn(wanted - zoom_);
    zoom_ = wanted;
}

void frmHelp::txtTopic_LinkClick(const QUrl& link) {
    const QUrl whole = HelpTopicUrl(ui_->txtTopic->source().fileName()).resolved(link);
    if (whole.scheme() == QLatin1String("qrc")) {
        const QString anchor = whole.hasFragment() ? QLatin1Char('#') + whole.fragment() : QString();
        ShowTopic(whole.fileName() + anchor);
    } else {
        shell_.Open(whole.toString(QUrl::FullyEncoded));
    }
}

void frmHelp::txtTopic_SourceChanged(const QUrl& source) {
    const QString topic = source.fileName();
    for (QTreeWidgetItem* item : ItemsOf(ui_->trvContents)) {
        if (item->data(0, topicRole).toString() == topic) {
            const QSignalBlocker quiet(ui_->trvContents);
            ui_->trvContents->setCurrentItem(item);
            break;
        }
    }
    const QString title = ui_->txtTopic->documentTitle();
    setWindowTitle(title.isEmpty() ? tr("Quellbox Help") : tr("%1 - Quellbox Help").arg(title));
    MarkFound();
}

// The focus stays where it is, so that the arrow keys go from topic to topic.
void frmHelp::trvContents_Click(const QTreeWidgetItem* item) {
    if (item != nullptr) {
        ui_->txtTopic->setSource(HelpTopicUrl(item->data(0, topicRole).toString()));
    }
}

void frmHelp::txtSearch_Change() {
    const QStringList words = Words(ui_->txtSearch->text());
    bool any = false;
    // From the last to the first, so that an entry knows whether one below it is shown.
    std::vector<QTreeWidgetItem*> items = ItemsOf(ui_->trvContents);
    std::reverse(items.begin(), items.end());
    for (QTreeWidgetItem* item : items) {
        bool shown = HasEveryWord(item->data(0, textRole).toString(), words);
        any = any || shown;
        for (int child = 0; child < item->childCount(); ++child) {
            shown = shown || !item->child(child)->isHidden();
        }
        item->setHidden(!shown);
    }
    ui_->lblNone->setVisible(!any);
    MarkFound();
}

void frmHelp::txtSearch_Return() {
    const QStringList words = Words(ui_->txtSearch->text());
    for (QTreeWidgetItem* item : ItemsOf(ui_->trvContents)) {
        if (!item->isHidden() && HasEveryWord(item->data(0, textRole).toString(), words)) {
            ShowTopic(item->data(0, topicRole).toString());
            return;
        }
    }
}

void frmHelp::MarkFound() {
    QList<QTextEdit::ExtraSelection> found;
    for (const QString& word : Words(ui_->txtSearch->text())) {
        const QTextDocument* text = ui_->txtTopic->document();
        for (QTextCursor at = text->find(word); !at.isNull(); at = text->find(word, at)) {
            QTextEdit::ExtraSelection mark;
            mark.cursor = at;
            mark.format.setBackground(palette().highlight());
            mark.format.setForeground(palette().highlightedText());
            found.append(mark);
        }
    }
    ui_->txtTopic->setExtraSelections(found);
}

} // namespace quellbox
