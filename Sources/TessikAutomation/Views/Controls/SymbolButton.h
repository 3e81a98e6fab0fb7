#pragma once

#include "TessikAutomation/Views/Controls/PanelButton.h"

namespace tessik {

/// A button with a symbol to the left of its text, or just one of them: a plate of the header, or flat in a list, where
/// Return presses it.
class SymbolButton final : public PanelButton {
    Q_OBJECT

public:
    enum class Face : std::uint8_t { plate, flat };
    SymbolButton(Face face, const QString& symbol, const QString& text, DrawingContext& drawing,
                 QWidget* parent = nullptr);
    QSize sizeHint() const override;
    int widthWithText() const;

    void setSymbol(const QString& name);
    /// Of the symbol.
    void setColor(QColor Tints::*color);
    /// A lamp that shows that something inside is waiting.
    void setCalling(bool calling);
    bool isCalling() const { return _isCalling; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    const Face _face;
    QString _symbolName;
    Symbol _symbol;
    QColor Tints::*_color = &Tints::legend;
    bool _isCalling = false;
};

} // namespace tessik
