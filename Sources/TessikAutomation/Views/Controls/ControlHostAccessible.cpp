#include "TessikAutomation/Views/Controls/ControlHostAccessible.h"

#include "TessikAutomation/Views/Controls/ControlHost.h"

#include <QPointer>

namespace tessik {
namespace {

/// One control, as a screen reader sees it.
class ControlAccessible final : public QAccessibleInterface,
                                public QAccessibleValueInterface,
                                public QAccessibleActionInterface {
public:
    ControlAccessible(ControlHost& host, int control) : _host(&host), _control(control) {}

    int control() const { return _control; }

    bool isValid() const override { return !_host.isNull(); }
    /// The host's object represents only the host.
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return _host->window()->windowHandle(); }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(_host); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    QString text(QAccessible::Text kind) const override {
        switch (kind) {
        case QAccessible::Name: return _host->name(_control);
        case QAccessible::Value: return _host->valueText(_control);
        // The bus carries only numbers as values, so controls without one put their text here.
        case QAccessible::Description: return isContinuous() || isSwitch() ? QString() : _host->valueText(_control);
        default: return {};
        }
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override {
        const QRect own = _host->controlRect(_control);
        return {_host->mapToGlobal(own.topLeft()), own.size()};
    }
    QAccessible::Role role() const override { return _host->view(_control).role(); }
    QAccessible::State state() const override {
        QAccessible::State state;
        const bool operable = _host->isOperable(_control);
        state.focusable = operable;
        state.focused = _host->focusedControl() == _control;
        state.readOnly = !operable;
        state.invisible = !_host->isVisible() || !_host->isShown(_control);
        state.checkable = isSwitch();
        state.checked = isSwitch() && number() != 0;
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface && isContinuous()) return static_cast<QAccessibleValueInterface*>(this);
        if (type == QAccessible::ActionInterface && _host->isOperable(_control))
            return static_cast<QAccessibleActionInterface*>(this);
        return nullptr;
    }

    QVariant currentValue() const override { return number(); }
    void setCurrentValue(const QVariant& value) override {
        _host->setNumber(_control, std::clamp(value.toDouble(), range().min, range().max));
    }
    QVariant maximumValue() const override { return range().max; }
    QVariant minimumValue() const override { return range().min; }
    QVariant minimumStepSize() const override { return range().step; }

    QStringList actionNames() const override {
        if (isSwitch()) return {toggleAction(), setFocusAction()};
        if (role() == QAccessible::PushButton) return {pressAction(), setFocusAction()};
        return {increaseAction(), decreaseAction(), setFocusAction()};
    }
    void doAction(const QString& action) override {
        if (action == setFocusAction()) _host->focusControl(_control, Qt::TabFocusReason);
        if (action == pressAction()) _host->setNumber(_control, _host->view(_control).clicked(number()));
        if (action == toggleAction()) _host->setNumber(_control, number() == 0 ? 1 : 0);
        if (action == increaseAction()) setCurrentValue(number() + range().step);
        if (action == decreaseAction()) setCurrentValue(number() - range().step);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    bool isSwitch() const { return role() == QAccessible::CheckBox; }
    bool isContinuous() const { return _host->view(_control).operation() == ControlView::Operation::drag; }
    double number() const { return _host->value(_control).number; }
    ControlView::Range range() const { return _host->view(_control).range(); }

    QPointer<ControlHost> _host;
    int _control;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* host = qobject_cast<ControlHost*>(object);
    return host ? new ControlHostAccessible(*host) : nullptr;
}

QAccessibleInterface* childOf(ControlHost& host, int control) {
    QAccessibleInterface* group = QAccessible::queryAccessibleInterface(&host);
    return group ? group->child(control) : nullptr;
}

} // namespace

void ControlHostAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(installed)
}

ControlHostAccessible::ControlHostAccessible(ControlHost& host)
    : QAccessibleWidget(&host, QAccessible::Grouping, host.accessibleName()), _host(host) {}

ControlHostAccessible::~ControlHostAccessible() {
    for (const QAccessible::Id id : _children)
        QAccessible::deleteAccessibleInterface(id);
}

void ControlHostAccessible::announceValue(ControlHost& host, int control) {
    QAccessibleInterface* child = childOf(host, control);
    if (!child) return;
    if (child->role() == QAccessible::CheckBox) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(child, changed);
        QAccessible::updateAccessibility(&event);
    } else if (child->valueInterface()) {
        QAccessibleValueChangeEvent event(child, host.value(control).number);
        QAccessible::updateAccessibility(&event);
    } else {
        QAccessibleEvent event(child, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
}

void ControlHostAccessible::announceFocus(ControlHost& host, int control) {
    if (!QAccessible::isActive()) return;
    if (QAccessibleInterface* child = childOf(host, control)) {
        QAccessibleEvent event(child, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

int ControlHostAccessible::childCount() const { return _host.controlCount(); }

QAccessibleInterface* ControlHostAccessible::child(int index) const {
    if (index < 0 || index >= childCount()) return nullptr;
    if (_children.empty())
        for (int i = 0; i < childCount(); ++i)
            _children.push_back(QAccessible::registerAccessibleInterface(new ControlAccessible(_host, i)));
    return QAccessible::accessibleInterface(_children[std::size_t(index)]);
}

int ControlHostAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* control = dynamic_cast<const ControlAccessible*>(child);
    return control && control->parent() == this ? control->control() : -1;
}

QAccessibleInterface* ControlHostAccessible::childAt(int x, int y) const {
    return child(_host.controlAt(_host.mapFromGlobal(QPoint(x, y))));
}

QAccessibleInterface* ControlHostAccessible::focusChild() const { return child(_host.focusedControl()); }

} // namespace tessik
