#pragma once

#include "TessikAutomation/Session/LocatorStore.h"
#include "TessikAutomation/Views/Controls/PanelButton.h"

namespace tessik {

/// A locator's position in a small display; pressing it goes there.
class LocatorField final : public PanelButton {
    Q_OBJECT

public:
    explicit LocatorField(DrawingContext& drawing, QWidget* parent = nullptr);
    /// Dashes where there is none.
    void setPosition(const std::optional<TimecodePosition>& position);

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// One locator: its label, its position to go to, a key that takes the current timecode and one that clears it.
class LocatorRow final : public QWidget {
    Q_OBJECT

public:
    /// `label`: "START" or "END".
    LocatorRow(const QString& label, DrawingContext& drawing, QWidget* parent = nullptr);

    /// What the row shows and offers.
    void setState(const std::optional<TimecodePosition>& locator, bool hasTimecode, bool hasTransport);

    LocatorField& field() const { return *_field; }
    PanelButton& captureKey() const { return *_capture; }
    PanelButton& clearKey() const { return *_clear; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const QString _label;
    DrawingContext& _drawing;
    LocatorField* _field;
    PanelButton* _capture;
    PanelButton* _clear;
};

} // namespace tessik
