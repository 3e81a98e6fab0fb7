#pragma once

#include "TessikAutomation/Views/Controls/ConsoleToggle.h"
#include "TessikAutomation/Views/Controls/PanelButton.h"

namespace tessik {

/// A key of the automation: a lamp above its legend, lit while it is checked.
class ModeKey final : public PanelButton {
    Q_OBJECT

public:
    ModeKey(const QString& legend, QColor Tints::*color, DrawingContext& drawing, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void nextCheckState() override {} // what it stands for decides

private:
    const ConsoleToggle _key;
};

} // namespace tessik
