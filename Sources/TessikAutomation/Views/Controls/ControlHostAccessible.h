#pragma once

#include <QAccessibleWidget>

namespace tessik {

class ControlHost;

/// Presents a host to screen readers as a group with one child per control.
class ControlHostAccessible final : public QAccessibleWidget {
public:
    explicit ControlHostAccessible(ControlHost& host);
    ~ControlHostAccessible() override;

    /// Registers hosts with Qt's accessibility; calling it once is enough.
    static void install();
    /// Tells screen readers of a new value, or of the keyboard focus. Does nothing if none is listening.
    static void announceValue(ControlHost& host, int control);
    static void announceFocus(ControlHost& host, int control);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    ControlHost& _host;
    mutable std::vector<QAccessible::Id> _children; ///< created on first use
};

} // namespace tessik
