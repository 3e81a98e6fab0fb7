#pragma once

#include "TessikAutomation/Views/Controls/ConsoleToggle.h"
#include "TessikAutomation/Views/Controls/PanelButton.h"

namespace tessik {

/// An automation key: a lamp above its legend, lit while checked.
class ModeKey final : public PanelButton {
    Q_OBJECT

public:
    ModeKey(const QString& legend, QColor Tints::*color, DrawingContext& drawing, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void nextCheckState() override {} // the engine decides, not the click

private:
    const ConsoleToggle _key;
};

} // namespace tessik
