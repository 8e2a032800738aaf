#include "app/ContentsPane.h"

#include "app/ErrorReport.h"
#include "messages/FileFailure.h"

namespace quellbox {

ContentsPane::ContentsPane(const ContentsPorts& ports, QWidget* parent) : ports_(ports) {
    MakeTree(parent);
    MakeRaw(parent);
    MakeLoaders();
    late_.setSingleShot(true);
    late_.setInterval(ports_.patience);
    late_.callOnTimeout([this] { ClearWhatIsLate(); });
}

ContentsPane::~ContentsPane() {
    delete view_;
}

template <class Handler>
void ContentsPane::Guarded(Handler handler) {
    RunReporting(handler, [this](const QString& text) { Q_EMIT Failed(text); });
}

void ContentsPane::MakeTree(QWidget* parent) {
    trvMessage = new StructureTreeView(parent);
    trvMessage->setObjectName(QStringLiteral("trvMessage"));
    trvMessage->setAccessibleName(tr("Message format layout"));
    trvMessage->setToolTip(tr("Message format layout"));
    connect(trvMessage, &StructureTreeView::NodeClick, this,
            [this](bool hasChildren, const QString& text, const QString& tag) {
                Guarded([&] { trvMessage_NodeClick(hasChildren, text, tag); });
            });
}

void ContentsPane::MakeRaw(QWidget* parent) {
    rtfRaw = new RawPane(parent);
    rtfRaw->setObjectName(QStringLiteral("rtfRaw"));
    NameRaw(rtfRaw->Form());
    connect(rtfRaw, &RawPane::FormChanged, this, &ContentsPane::NameRaw);
}

void ContentsPane::NameRaw(TextForm form) {
    const QString name = form == TextForm::Source ? tr("Raw message contents") : tr("Readable text of the message");
    rtfRaw->setAccessibleName(name);
    rtfRaw->setToolTip(name);
}

void ContentsPane::MakeLoaders() {
    loader_ = std::make_unique<MessageLoader>(ports_.files, ports_.pool);
    connect(loader_.get(), &MessageLoader::Failed, this, &ContentsPane::TakeError);
    pageLoader_ = std::make_unique<MessageLoader>(ports_.files, ports_.pool);
    connect(pageLoader_.get(), &MessageLoader::Failed, this, &ContentsPane::Failed);
}

void ContentsPane::TakeError(const QString& text) {
    if (!loader_->IsBusy()) {
        CancelLoading();
    }
    Q_EMIT Failed(text);
}

void ContentsPane::Show(const QString& path) {
    if (loading_ && loading_->path == path && loading_->structure) {
        return; // it is on its way
    }
    const bool isShown = rtfRaw->FileName() == path && !rtfRaw->Text().isEmpty() && !trvMessage->IsEmpty();
    if (isShown) {
        Q_EMIT MessageSeen(path); // again, it may have been marked as unread
    }
    Loading wanted;
    wanted.path = path;
    wanted.ifExists = true;
    wanted.text = !isShown;
    wanted.structure = !isShown;
    wanted.takesPlace = !isShown;
    Load(wanted);
}

void ContentsPane::ShowNext(const QString& path) {
    Loading wanted;
    wanted.path = path;
    wanted.text = true;
    wanted.structure = true;
    wanted.takesPlace = true;
    Load(wanted);
}

void ContentsPane::ShowText(const QString& path) {
    Loading wanted;
    wanted.path = path;
    wanted.text = true;
    Load(wanted);
}

void ContentsPane::ShowInViewer(const QString& path) {
    Loading wanted;
    wanted.path = path;
    wanted.text = true;
    wanted.forViewer = true;
    Load(wanted);
}

// In place of what is being read now. What is still to come of the same message, comes nevertheless.
void ContentsPane::Load(Loading wanted) {
    if (loading_ && loading_->path == wanted.path) {
        wanted.structure = wanted.structure || loading_->structure;
        wanted.ifExists = wanted.ifExists || loading_->ifExists;
        wanted.forViewer = wanted.forViewer || loading_->forViewer;
        wanted.text = wanted.text || loading_->text;
        wanted.takesPlace = wanted.takesPlace || loading_->takesPlace;
    }
    CancelLoading();
    wanted.form = WantedForm();
    MessageRequest request = RequestOf(wanted.path, wanted.form);
    request.ifExists = wanted.ifExists;
    request.text = wanted.text;
    request.structure = wanted.structure;
    loader_->Load(request, [this](const MessageAnswer& answer) { TakeAnswer(answer); });
    loading_ = wanted;
    late_.start();
}

MessageRequest ContentsPane::RequestOf(const QString& path, TextForm form) const {
    MessageRequest request;
    request.path = path;
    request.readable = form == TextForm::Readable;
    request.profile = &Profile();
    return request;
}

void ContentsPane::ShowAnew() {
    if (loading_ || !rtfRaw->Text().isEmpty()) {
        Q_EMIT WholeMessageWanted();
    }
}

void ContentsPane::ReadHeaders(const QString& path) {
    loader_->LoadHeaders(path, Profile(), [this, path, asked = &Profile()](const MessageAnswer& answer) {
        if (answer.kind == MessageAnswer::Kind::Headers && asked == &Profile()) {
            Q_EMIT HeadersRead(path, answer.headers);
        }
    });
}

// An ordinary message has come by now. Until one that takes longer does, nothing is shown that belongs to another one.
void ContentsPane::ClearWhatIsLate() {
    if (!loading_) {
        return;
    }
    if (loading_->text && loading_->takesPlace) {
        rtfRaw->clear();
    }
    if (loading_->structure) {
        trvMessage->ShowStructure({}, toggles_);
    }
}

void ContentsPane::CancelLoading() {
    late_.stop();
    loader_->CancelLoad();
    loading_.reset();
}

void ContentsPane::Clear() {
    ClearText();
    trvMessage->ShowStructure({}, toggles_);
}

void ContentsPane::ClearText() {
    CancelLoading();
    rtfRaw->clear();
}

void ContentsPane::Forget() {
    loading_.reset();
    MakeLoaders();
    if (page_ && !view_.isNull()) {
        LoadPage(*page_);
    }
}

void ContentsPane::TakeAnswer(const MessageAnswer& answer) {
    const Loading wanted = *loading_;
    if (answer.isLast) {
        loading_.reset();
        late_.stop();
    }
    switch (answer.kind) {
    case MessageAnswer::Kind::Gone:
        Clear();
        break;
    case MessageAnswer::Kind::Unreadable:
        TakeFailure(answer, wanted);
        break;
    case MessageAnswer::Kind::Text:
        TakeText(answer, wanted);
        break;
    case MessageAnswer::Kind::Structure:
        trvMessage->ShowStructure(answer.structure, toggles_);
        break;
    default:
        break;
    }
}

void ContentsPane::TakeText(const MessageAnswer& answer, const Loading& wanted) {
    if (loading_) {
        loading_->text = false;
        loading_->forViewer = false;
    }
    rtfRaw->ShowFile(answer.path, answer.text, wanted.form);
    if (wanted.structure) {
        Q_EMIT MessageSeen(wanted.path);
    }
    if (wanted.forViewer) {
        ShowViewer();
    }
}

void ContentsPane::TakeFailure(const MessageAnswer& answer, const Loading& wanted) {
    LogFailures({{answer.path, answer.reason}});
    if (!answer.text.isEmpty()) {
        rtfRaw->ShowText(answer.text);
    } else if (wanted.takesPlace) {
        rtfRaw->clear();
    }
    if (wanted.structure) {
        Q_EMIT MessageSeen(wanted.path);
        trvMessage->ShowStructure({}, toggles_);
    }
}

void ContentsPane::SetToggles(ContentsToggles pressed) {
    toggles_ = pressed;
    trvMessage->ApplyToggles(toggles_);
}

void ContentsPane::tlbContents_ButtonClick(const QString& key, bool pressed) {
    ContentsToggles toggles = toggles_;
    if (key == QLatin1String("collapse")) {
        toggles.collapse = pressed;
    } else if (key == QLatin1String("attachment")) {
        toggles.attachment = pressed;
    } else {
        return;
    }
    SetToggles(toggles);
}

void ContentsPane::trvMessage_NodeClick(bool hasChildren, const QString& text, const QString& tag) {
    const std::optional<QString> shown = TextOfClickedNode(hasChildren, text, tag);
    if (shown) {
        CancelLoading();
        rtfRaw->ShowText(*shown);
    } else {
        Q_EMIT WholeMessageWanted();
    }
}

void ContentsPane::ShowViewer() {
    if (view_.isNull() || !view_->isVisible()) { // one that was closed is only about to be deleted
        delete view_;
        view_ = new frmView(ports_.store);
        connect(view_, &frmView::PageWanted, this, &ContentsPane::LoadPage);
    }
    view_->ShowMessage(rtfRaw->FileName(), rtfRaw->Text(), rtfRaw->Form());
}

// The page that the viewer has turned to, beside the message that is selected meanwhile.
void ContentsPane::LoadPage(TextForm form) {
    MessageRequest request = RequestOf(view_->FileName(), form);
    request.text = true;
    page_ = form;
    pageLoader_->Load(request, [this, form, path = request.path](const MessageAnswer& answer) {
        page_.reset();
        if (view_.isNull() || view_->FileName() != path) {
            return;
        }
        const bool isText = answer.kind == MessageAnswer::Kind::Text || !answer.text.isEmpty();
        view_->ShowPage(form, isText ? answer.text : answer.reason);
    });
}

void ContentsPane::Close() {
    CancelLoading(); // it would open the viewer again
    pageLoader_->Cancel();
    CloseViewer();
}

void ContentsPane::CloseViewer() {
    if (!view_.isNull()) {
        view_->close();
    }
}

} // namespace quellbox
