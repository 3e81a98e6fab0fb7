#include "TessikAutomation/Views/Window/HeaderTitle.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Controls/TextLine.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"

#include <QVBoxLayout>

#include <cmath>

namespace tessik {
namespace {

constexpr int minTitleWidth = 96; // narrower, the session's name says nothing; the window's title has it too
constexpr int titleHeight = 18;
constexpr int lineHeight = 13;
constexpr QSize deselectSize(28, lineHeight);
constexpr int crossSide = 10;

/// A cross in the line of print, without a plate: the line is lower than a key.
class DeselectKey final : public PanelButton {
public:
    DeselectKey(DrawingContext& drawing, QWidget* parent)
        : PanelButton({}, nullptr, drawing, parent), _cross(symbolNamed(QStringLiteral("clear"))) {
        setFixedSize(deselectSize);
        setAccessibleName(QStringLiteral("Deselect the pass"));
        setToolTip(accessibleName());
        setHelpContext(*this, HelpContext::passes);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
        painter.setRenderHint(QPainter::Antialiasing);
        const QRect whole = canvas.px(QRectF(rect()));
        const Tints& tints = canvas.look.tints;
        if (isHot()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(withAlpha(tints.text, isDown() ? 0.2 : 0.1));
            painter.drawRoundedRect(QRectF(whole), 4 * canvas.scale, 4 * canvas.scale);
        }
        QRectF cross(0, 0, canvas.px(crossSide), canvas.px(crossSide));
        cross.moveCenter(QRectF(whole).center());
        _cross(painter, cross, tints.text);
        drawFocus(canvas, whole);
    }

private:
    const Symbol _cross;
};

} // namespace

HeaderTitle::HeaderTitle(DrawingContext& drawing, QWidget* parent)
    : HeaderPart(parent),
      _title(new TextLine(Type::font(15, QFont::DemiBold), titleHeight, &Tints::text, drawing, this)),
      _recalled(new TextLine(Type::font(11, QFont::Medium), lineHeight, &Tints::secondaryText, drawing, this)),
      _deselect(new DeselectKey(drawing, this)),
      _state(new TextLine(Type::font(11, QFont::Medium), lineHeight, &Tints::secondaryText, drawing, this)),
      _lines(new QBoxLayout(QBoxLayout::LeftToRight)),
      _problems(new SymbolButton(SymbolButton::Face::plate, QStringLiteral("warning"), {}, drawing, this)) {
    setFixedHeight(Metrics::headerHeight);
    _title->setObjectName(QStringLiteral("title"));
    _recalled->setObjectName(QStringLiteral("recalled"));
    _state->setObjectName(QStringLiteral("state"));
    // The state gets its full width before the name gets any.
    _state->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    _problems->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    _deselect->hide();
    setHelpContext(*_problems, HelpContext::problems);
    _problems->hide();

    const auto toTheRight = [](QBoxLayout* line, TextLine* text) {
        line->addStretch(1);
        line->addWidget(text);
    };
    auto* title = new QHBoxLayout;
    auto* name = new QHBoxLayout;
    auto* state = new QHBoxLayout;
    toTheRight(title, _title);
    toTheRight(name, _recalled);
    name->setSpacing(0);
    name->addWidget(_deselect);
    toTheRight(state, _state);
    _lines->setSpacing(0);
    _lines->addLayout(name, 1);
    _lines->addLayout(state);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addStretch(1);
    layout->addLayout(title);
    layout->addLayout(_lines);
    layout->addWidget(_problems, 0, Qt::AlignRight);
    layout->addStretch(1);
}

void HeaderTitle::setTexts(const QString& title, const QString& recalled, const QString& state) {
    _stateText = state;
    _title->setText(title);
    _recalled->setText(recalled);
    _recalled->setVisible(!recalled.isEmpty());
    setAccessibleName(QStringList{title, recalled, state}.join(QStringLiteral(", ")));
    arrangeState();
}

/// Beside the name if both fit on one line.
void HeaderTitle::arrangeState() {
    const bool isAlone = _recalled->isHidden();
    const QString beside = isAlone ? _stateText : QStringLiteral("  ·  ") + _stateText;
    _state->setText(beside);
    const int key = _deselect->isHidden() ? 0 : deselectSize.width();
    const bool fits = isAlone || _recalled->sizeHint().width() + key + _state->sizeHint().width() <= width();
    if (!fits) _state->setText(_stateText);
    _lines->setDirection(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

int HeaderTitle::neededWidth(HeaderFit) const {
    // Room for the problems key is reserved, so that nothing moves under a hand when it appears.
    const int state = int(std::ceil(QFontMetricsF(_state->font()).horizontalAdvance(_stateText)));
    return Metrics::toGridUp(std::max({minTitleWidth, state, _problems->sizeHint().width()}));
}

void HeaderTitle::resizeEvent(QResizeEvent*) { arrangeState(); }

} // namespace tessik
