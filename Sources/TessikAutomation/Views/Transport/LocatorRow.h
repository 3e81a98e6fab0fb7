#pragma once

#include "TessikAutomation/Session/LocatorStore.h"
#include "TessikAutomation/Views/Controls/PanelButton.h"

#include <QPointer>

class QLabel;

namespace tessik {

/// A locator's position in a small display; pressing it goes there.
class LocatorField final : public PanelButton {
    Q_OBJECT

public:
    explicit LocatorField(DrawingContext& drawing, QWidget* parent = nullptr);
    /// Dashes if there is none.
    void setPosition(const std::optional<TimecodePosition>& position);

protected:
    void paintEvent(QPaintEvent* event) override;
};

class EntryField;

/// One locator: its label, its position to go to, a key that captures the current timecode and one that clears it. F2
/// and the context menu let the position be typed, even if there is none yet and no machine to send there.
class LocatorRow final : public QWidget {
    Q_OBJECT

public:
    /// `label`: "START" or "END". `captureKeys` names the capture keys in help texts.
    LocatorRow(const QString& label, const QString& captureKeys, DrawingContext& drawing, QWidget* parent = nullptr);

    /// Sets what the row shows and offers.
    void setState(const std::optional<TimecodePosition>& locator, bool hasTimecode, bool hasTransport);

    /// The rate of what is typed. Must be set.
    std::function<MTCFrameRate()> rate;
    /// Opens a field for typing the position. Invalid text stays there, with what is wrong with it, until it is
    /// corrected or dropped with Escape.
    void edit();

    LocatorField& field() const { return *_field; }
    PanelButton& captureKey() const { return *_capture; }
    PanelButton& clearKey() const { return *_clear; }

Q_SIGNALS:
    void typed(const TimecodePosition& position);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    bool keep();
    void closeEntry();
    void showProblem(const QString& problem);

    const QString _label;
    DrawingContext& _drawing;
    LocatorField* _field;
    PanelButton* _capture;
    PanelButton* _clear;
    QPointer<EntryField> _entry;
    QPointer<QLabel> _problem;
};

} // namespace tessik
