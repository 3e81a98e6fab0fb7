#pragma once

#include "TessikAutomation/Views/Controls/ControlView.h"

#include <QPropertyNotifier>
#include <QUndoStack>

#include <functional>
#include <memory>
#include <vector>

namespace tessik {

/// One control's value on one panel.
struct ControlBinding {
    QString name; ///< in full: "Channel 5 fader"
    std::function<ControlValue()> read;
    std::function<void(double)> write; ///< empty if the control is display-only
    /// The observers that call `changed` after a property behind `read` was written.
    std::function<std::vector<QPropertyNotifier>(std::function<void()> changed)> watch;
    QUndoStack* history = nullptr; ///< where changes by hand can be undone; null for none
    QString undoText;              ///< its name there: "HI MID gain, channel 5"
};

/// Observers on several properties, for `ControlBinding::watch`.
template <typename... Properties>
auto watching(Properties&... properties) {
    return [... watched = &properties](const std::function<void()>& changed) {
        std::vector<QPropertyNotifier> observers;
        observers.reserve(sizeof...(watched));
        (observers.push_back(watched->addNotifier(changed)), ...);
        return observers;
    };
}

/// What panels of one kind have in common: their face, and each control with its view and place.
struct PanelKind {
    struct Control {
        QString id; ///< within the kind: "fader"
        std::unique_ptr<const ControlView> view;
        std::function<QRect(QSize panel)> place;
    };

    std::function<void(Canvas&, QSize panel)> paintFace;
    std::vector<Control> controls; ///< in keyboard focus order
};

/// A panel kind, plus how each control finds its value on a subject such as a channel. The one list that serves
/// painting, hit testing, focus, tooltips, accessibility and tests.
template <typename Subject>
struct ControlTable {
    PanelKind kind;
    std::vector<std::function<ControlBinding(const Subject&)>> bindings; ///< in the order of `kind.controls`

    template <typename View>
    void add(QString id, View view, std::function<QRect(QSize)> place,
             std::function<ControlBinding(const Subject&)> bind) {
        kind.controls.push_back({std::move(id), std::make_unique<const View>(std::move(view)), std::move(place)});
        bindings.push_back(std::move(bind));
    }
    std::vector<ControlBinding> bind(const Subject& subject) const {
        std::vector<ControlBinding> bound;
        bound.reserve(bindings.size());
        for (const auto& binding : bindings)
            bound.push_back(binding(subject));
        return bound;
    }
};

} // namespace tessik
