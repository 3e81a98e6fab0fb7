#pragma once

#include "TessikAutomation/Views/Controls/ConsoleToggle.h"
#include "TessikAutomation/Views/Controls/RotaryKnob.h"
#include "TessikAutomation/Views/Desk/RecordControl.h"

namespace tessik::ModulePanel {

/// A panel section's title, in capitals, with a hairline to the right end of `rect`.
void paintTitle(Canvas& canvas, const QRect& rect, const QString& text, const QColor& tint);

/// The switch key or knob that the table of controls describes.
template <typename Record>
ConsoleToggle toggle(const RecordControl<Record>& control, const QString& shortLabel = {}) {
    return ConsoleToggle(control.title, control.lamp, true, shortLabel);
}
template <typename Record>
RotaryKnob knob(const RecordControl<Record>& control) {
    RotaryKnob view(control.title, control.travel, control.tint);
    view.polarized = control.travel.hasCenterDetent;
    if (!control.travel.positions.isEmpty()) { // its end positions keep clear of the legend
        view.minAngle = -110;
        view.maxAngle = 110;
    }
    return view;
}

} // namespace tessik::ModulePanel
