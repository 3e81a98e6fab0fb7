#include "TessikAutomation/Help/HelpStyle.h"

#include <QFontDatabase>
#include <QIconEngine>
#include <QPainter>

namespace tessik {

const HelpColors& HelpColors::dark() {
    static const HelpColors colors{.page = QColor(0x1c1c1c),
                                   .sidebar = QColor(0x161616),
                                   .field = QColor(0x262626),
                                   .divider = QColor(0x303030),
                                   .text = QColor(0xcfcdca),
                                   .strongText = QColor(0xf3f1ee),
                                   .dimText = QColor(0x98958f),
                                   .accent = QColor(0xf0a63c),
                                   .selection = QColor(0x33302a),
                                   .selectionText = QColor(0xffcf86),
                                   .quote = QColor(0x262420),
                                   .chip = QColor(0x2b2b2b),
                                   .chipEdge = QColor(0x434343),
                                   .match = QColor(0x6b4e12)};
    return colors;
}

const HelpColors& HelpColors::light() {
    static const HelpColors colors{.page = QColor(0xf8f7f5),
                                   .sidebar = QColor(0xe6e4e0),
                                   .field = QColor(0xf8f7f5),
                                   .divider = QColor(0xd3d0ca),
                                   .text = QColor(0x36332f),
                                   .strongText = QColor(0x161412),
                                   .dimText = QColor(0x6c6761),
                                   .accent = QColor(0xb06a0a),
                                   .selection = QColor(0xd6d0c4),
                                   .selectionText = QColor(0x3a2400),
                                   .quote = QColor(0xefebe2),
                                   .chip = QColor(0xecebe8),
                                   .chipEdge = QColor(0xcdcac4),
                                   .match = QColor(0xffdf9a)};
    return colors;
}

namespace HelpStyle {

namespace {

QFont font(int pixelSize, QFont::Weight weight = QFont::Normal) {
    QFont font;
    font.setFamilies({QStringLiteral("Inter"), font.family()});
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

/// Draws `Shape` in one colour at whatever size and resolution is asked for.
class LineIcon final : public QIconEngine {
public:
    enum class Shape { magnifier, cross };
    LineIcon(Shape shape, QColor color) : _shape(shape), _color(color) {}

    QIconEngine* clone() const override { return new LineIcon(*this); }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / 16.0, rect.height() / 16.0);
        painter->setPen(QPen(_color, 1.5, Qt::SolidLine, Qt::RoundCap));
        if (_shape == Shape::magnifier) {
            painter->drawEllipse(QPointF(7, 7), 4.25, 4.25);
            painter->drawLine(QPointF(10.3, 10.3), QPointF(13.5, 13.5));
        } else {
            painter->drawLine(QPointF(4.25, 4.25), QPointF(11.75, 11.75));
            painter->drawLine(QPointF(11.75, 4.25), QPointF(4.25, 11.75));
        }
        painter->restore();
    }

private:
    Shape _shape;
    QColor _color;
};

} // namespace

QFont textFont() { return font(15); }

QFont titleFont() {
    QFont title = font(28, QFont::DemiBold);
    title.setLetterSpacing(QFont::AbsoluteSpacing, -0.4);
    return title;
}

QFont headingFont() { return font(17, QFont::DemiBold); }

QFont tableFont() { return font(14); }

QFont codeFont(const QFont& within) {
    QFont code = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    code.setPixelSize(within.pixelSize() - 2);
    return code;
}

QFont listFont() { return font(13); }

QIcon magnifier(const QColor& color) { return QIcon(new LineIcon(LineIcon::Shape::magnifier, color)); }

QIcon cross(const QColor& color) { return QIcon(new LineIcon(LineIcon::Shape::cross, color)); }

QString sheet(const HelpColors& colors) {
    QString sheet = QStringLiteral(R"(
#help { background: @page; }
#sidebar { background: @sidebar; border-right: 1px solid @divider; }
#search { background: @field; color: @strongText; border: 1px solid @divider; border-radius: 7px; padding: 5px 6px; }
#search:focus { border-color: @accent; }
#topics { background: transparent; color: @text; border: none; outline: none; }
#topics::item { padding: 6px 8px; margin: 1px 8px; border-radius: 6px; border: 1px solid transparent; }
#topics::item:hover { background: @field; }
#topics::item:selected { background: @selection; color: @selectionText; }
#topics::item:selected:focus { border-color: @accent; }
#page { background: @page; border: none; }
#close { background: transparent; border: 1px solid transparent; border-radius: 6px; padding: 5px; }
#close:hover { background: @chip; }
#close:pressed { background: @selection; }
#close:focus { border-color: @accent; }
#noResultsTitle { color: @strongText; }
#noResultsText { color: @dimText; }
QSplitter::handle { background: transparent; }
QScrollBar:vertical { background: transparent; width: 12px; margin: 0; }
QScrollBar::handle:vertical { background: @chipEdge; min-height: 36px; border-radius: 4px; margin: 2px; }
QScrollBar::handle:vertical:hover { background: @dimText; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QToolTip { background: @chip; color: @strongText; border: 1px solid @chipEdge; padding: 4px 6px; }
)");
    const std::pair<const char*, const QColor&> names[] = {
        {"@selectionText", colors.selectionText}, // before the name that it begins with
        {"@selection", colors.selection},
        {"@page", colors.page},
        {"@sidebar", colors.sidebar},
        {"@field", colors.field},
        {"@divider", colors.divider},
        {"@text", colors.text},
        {"@accent", colors.accent},
        {"@strongText", colors.strongText},
        {"@dimText", colors.dimText},
        {"@chipEdge", colors.chipEdge},
        {"@chip", colors.chip},
    };
    for (const auto& [name, color] : names)
        sheet.replace(QLatin1String(name), color.name());
    return sheet;
}

} // namespace HelpStyle

} // namespace tessik
