#pragma once

#include <QAccessibleWidget>

namespace tessik {

class ControlHost;

/// Shows a host to screen readers as a group with one child a control.
class ControlHostAccessible final : public QAccessibleWidget {
public:
    explicit ControlHostAccessible(ControlHost& host);
    ~ControlHostAccessible() override;

    /// Makes hosts known to the accessibility of Qt; once is enough.
    static void install();
    /// Tells a screen reader of a new value, or of the keyboard focus. Nothing where none listens.
    static void announceValue(ControlHost& host, int control);
    static void announceFocus(ControlHost& host, int control);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    ControlHost& _host;
    mutable std::vector<QAccessible::Id> _children; ///< made when first asked for
};

} // namespace tessik
