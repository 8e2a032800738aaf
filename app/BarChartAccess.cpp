#include "app/BarChartAccess.h"

#include "app/BarChart.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QWindow>

#include <algorithm>
#include <vector>

namespace quellbox {

namespace {

/// One place of a chart, by its number among those that are shown. It may be asked when the chart shows less or is
/// gone.
class BarAccess : public QAccessibleInterface, public QAccessibleActionInterface, public QAccessibleValueInterface {
public:
    BarAccess(BarChart* chart, int number) : chart_(chart), number_(number) {}

    bool isValid() const override { return chart_ && number_ < static_cast<int>(chart_->Shown().marks.size()); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return chart_ ? chart_->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override {
        return chart_ ? QAccessible::queryAccessibleInterface(chart_) : nullptr;
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QString text(QAccessible::Text which) const override {
        if (!isValid()) {
            return {};
        }
        if (which == QAccessible::Name) {
            return chart_->TextOf(Place());
        }
        return which == QAccessible::Value ? QString::number(CountAt(chart_->Picture(), Place())) : QString();
    }
    void setText(QAccessible::Text /*which*/, const QString& /*text*/) override {}

    QRect rect() const override {
        return isValid() ? chart_->RectOf(Place()).translated(chart_->mapToGlobal(QPoint())) : QRect();
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.focusable = isValid();
        state.focused = isValid() && chart_->hasFocus() && chart_->Current() == Place();
        state.invisible = !isValid() || !chart_->isVisible();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ActionInterface) {
            return static_cast<QAccessibleActionInterface*>(this);
        }
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& name) override {
        if (!isValid()) {
            return;
        }
        if (name == pressAction()) {
            chart_->Choose(Place(), false);
        } else if (name == setFocusAction()) {
            chart_->setFocus();
            chart_->SetCurrent(Place());
        }
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

    QVariant currentValue() const override { return isValid() ? CountAt(chart_->Picture(), Place()) : qint64{0}; }
    void setCurrentValue(const QVariant& /*value*/) override {}
    QVariant maximumValue() const override { return currentValue(); }
    QVariant minimumValue() const override { return 0; }
    QVariant minimumStepSize() const override { return 1; }

private:
    OverviewPlace Place() const { return chart_->Shown().marks[static_cast<size_t>(number_)].place; }

    QPointer<BarChart> chart_;
    int number_;
};

class BarChartAccess : public QAccessibleWidget {
public:
    explicit BarChartAccess(BarChart* chart) : QAccessibleWidget(chart, QAccessible::Chart), chart_(chart) {}

    ~BarChartAccess() override {
        for (const QAccessible::Id child : children_) {
            QAccessible::deleteAccessibleInterface(child);
        }
    }

    int childCount() const override { return chart_ ? static_cast<int>(chart_->Shown().marks.size()) : 0; }

    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        while (static_cast<int>(children_.size()) <= index) {
            auto* bar = new BarAccess(chart_, static_cast<int>(children_.size()));
            children_.push_back(QAccessible::registerAccessibleInterface(bar));
        }
        return QAccessible::accessibleInterface(children_[static_cast<size_t>(index)]);
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto found = std::find_if(children_.begin(), children_.end(), [child](QAccessible::Id id) {
            return QAccessible::accessibleInterface(id) == child;
        });
        return found == children_.end() ? -1 : static_cast<int>(found - children_.begin());
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        if (!chart_) {
            return nullptr;
        }
        const QPointF point = QPointF(chart_->mapFromGlobal(QPoint(x, y))) - chart_->Inside().topLeft();
        return child(IndexOf(chart_->Shown().PlaceAt(point)));
    }

    QAccessibleInterface* focusChild() const override {
        return chart_ && chart_->hasFocus() ? child(IndexOf(chart_->Current())) : nullptr;
    }

private:
    int IndexOf(OverviewPlace place) const {
        const std::vector<PictureMark>& marks = chart_->Shown().marks;
        const auto found =
            std::find_if(marks.begin(), marks.end(), [place](const PictureMark& mark) { return mark.place == place; });
        return found == marks.end() ? -1 : static_cast<int>(found - marks.begin());
    }

    QPointer<BarChart> chart_;
    mutable std::vector<QAccessible::Id> children_; // made when they are asked for
};

QAccessibleInterface* MakeAccess(const QString& /*name*/, QObject* object) {
    auto* chart = qobject_cast<BarChart*>(object);
    return chart != nullptr ? new BarChartAccess(chart) : nullptr;
}

} // namespace

void InstallBarChartAccess() {
    QAccessible::installFactory(MakeAccess); // which is kept once
}

} // namespace quellbox
