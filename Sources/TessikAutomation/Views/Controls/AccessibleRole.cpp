#include "TessikAutomation/Views/Controls/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>

namespace tessik {
namespace {

constexpr char property[] = "tessikAccessibleRole";

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (!object || !object->isWidgetType()) return nullptr;
    const QVariant role = object->property(property);
    return role.isValid() ? new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Role(role.toInt()))
                          : nullptr;
}

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(makeInterface), true);
    widget.setProperty(property, int(role));
}

} // namespace tessik
