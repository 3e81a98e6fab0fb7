#include "TessikAutomation/Views/Drawing/Type.h"

#include "TessikAutomation/Views/Drawing/DrawnText.h"

#include <QDir>
#include <QFontDatabase>
#include <QFontMetricsF>

static void initResources() { Q_INIT_RESOURCE(fonts); } // the macro does not work inside a namespace

namespace tessik::Type {
namespace {

QString family = QStringLiteral("Inter");
constexpr int minPixels = 8; // anything smaller is unreadable

} // namespace

void installFonts() {
    static const bool installed = [] {
        initResources();
        bool found = false;
        const QDir fonts(QStringLiteral(":/fonts"));
        for (const QString& file : fonts.entryList())
            found |= QFontDatabase::addApplicationFont(fonts.filePath(file)) >= 0;
        if (!found && !QFontDatabase::families().contains(family))
            family = QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
        return true;
    }();
    Q_UNUSED(installed)
}

QFont font(qreal pixels, QFont::Weight weight, qreal spacing) {
    QFont font(family);
    font.setPixelSize(std::max(minPixels, qRound(pixels)));
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferVerticalHinting);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    if (spacing != 0) font.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
    return font;
}

QString typeset(QString text) {
    if (text.startsWith(QLatin1Char('-'))) text[0] = QChar(0x2212);
    return text;
}

void draw(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QString& text, const QFont& font,
          const QColor& color) {
    if (onDraw) onDraw(text, font);
    const QFontMetricsF metrics(font);
    // The space after the last letter is not part of the line.
    const qreal width = metrics.horizontalAdvance(text) - font.letterSpacing();
    qreal x = rect.x();
    if (alignment & Qt::AlignRight)
        x += rect.width() - width;
    else if (alignment & Qt::AlignHCenter)
        x += (rect.width() - width) / 2;
    const qreal baseline = rect.y() + (rect.height() + metrics.capHeight()) / 2;
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QPointF(std::round(x), std::round(baseline)), text);
}

} // namespace tessik::Type
