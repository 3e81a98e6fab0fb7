#include "TessikAutomation/ManualSettings/Travel.h"

#include "TessikKit/Models/DecimalText.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace tessik {
namespace {

constexpr double detentReach = 0.025; // of the range, on both sides of the centre
constexpr double wheelTravel = 300;
constexpr double finePerStep = 5;
constexpr double stepsPerPage = 5;

/// A number without a minus sign if it is written as zero.
QString fixed(double value, int decimals, bool sign = false) {
    QString text = decimalText(value, decimals);
    const bool zero = text.toDouble() == 0;
    if (zero && text.startsWith(QLatin1Char('-'))) text.remove(0, 1);
    if (sign && !zero && value > 0) text.prepend(QLatin1Char('+'));
    return text;
}

/// A number followed by one of the units, and the unit's place counted from 1, 0 if there is none.
std::optional<std::pair<double, int>> numberWithUnit(QString text, const QStringList& units) {
    text = text.trimmed().toLower();
    text.replace(QChar(0x2212), QLatin1Char('-'));
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    static const QRegularExpression form(QStringLiteral("^([+-]?\\d*\\.?\\d+|[+-]?\\d+\\.)\\s*([a-z]*)$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) return std::nullopt;
    const QString unit = match.captured(2);
    const qsizetype found = unit.isEmpty() ? 0 : units.indexOf(unit) + 1;
    if (!unit.isEmpty() && found == 0) return std::nullopt;
    return std::pair(match.captured(1).toDouble(), int(found));
}

QString decibelText(double value) { return fixed(value, 1, true) + QStringLiteral(" dB"); }
std::optional<double> parseDecibels(const QString& text) {
    const auto number = numberWithUnit(text, {QStringLiteral("db")});
    return number ? std::optional(number->first) : std::nullopt;
}

QString frequencyText(double value) {
    if (value < 999.5) return fixed(value, 0) + QStringLiteral(" Hz");
    return fixed(value / 1000, value < 9995 ? 2 : 1) + QStringLiteral(" kHz");
}
std::optional<double> parseFrequency(const QString& text) {
    const auto number = numberWithUnit(text, {QStringLiteral("hz"), QStringLiteral("k"), QStringLiteral("khz")});
    if (!number) return std::nullopt;
    return number->first * (number->second >= 2 ? 1000 : 1);
}

QString levelText(double value) { return fixed(value, 1); }
std::optional<double> parseLevel(const QString& text) {
    const auto number = numberWithUnit(text, {});
    return number ? std::optional(number->first) : std::nullopt;
}

QString panText(double value) {
    const int percent = qRound(value * 100);
    if (percent == 0) return QStringLiteral("C");
    return QStringLiteral("%1 %2").arg(percent < 0 ? QLatin1Char('L') : QLatin1Char('R')).arg(std::abs(percent));
}
std::optional<double> parsePan(const QString& text) {
    QString rest = text.trimmed().toLower();
    if (rest == QLatin1String("c") || rest == QLatin1String("l") || rest == QLatin1String("r"))
        return rest == QLatin1String("c") ? 0 : rest == QLatin1String("l") ? -1 : 1;
    double side = 1;
    if (rest.startsWith(QLatin1Char('l')) || rest.startsWith(QLatin1Char('r'))) {
        side = rest.startsWith(QLatin1Char('l')) ? -1 : 1;
        rest.remove(0, 1);
    }
    const auto number = numberWithUnit(rest, {});
    return number ? std::optional(side * number->first / 100) : std::nullopt;
}

} // namespace

const ValueFormat ValueFormat::decibels{decibelText, parseDecibels};
const ValueFormat ValueFormat::frequency{frequencyText, parseFrequency};
const ValueFormat ValueFormat::level{levelText, parseLevel};
const ValueFormat ValueFormat::pan{panText, parsePan};

double Travel::position(double value) const {
    const double p = logarithmic ? (std::log(std::max(value, min)) - std::log(min)) / (std::log(max) - std::log(min))
                                 : (value - min) / (max - min);
    return std::clamp(p, 0.0, 1.0);
}

double Travel::valueAt(double position) const {
    const double p = std::clamp(position, 0.0, 1.0);
    const double value =
        logarithmic ? std::exp(std::log(min) + p * (std::log(max) - std::log(min))) : min + p * (max - min);
    return std::clamp(value, min, max);
}

double Travel::valueUnderHand(double position) const {
    const double value = valueAt(position);
    if (!positions.isEmpty()) return std::round(value);
    const double centre = (min + max) / 2;
    return hasCenterDetent && std::abs(value - centre) < detentReach * (max - min) ? centre : value;
}

std::optional<double> Travel::keyed(int key, bool fine, double value) const {
    const double press = 1.0 / steps;
    const auto moved = [&](double by) {
        const double to = valueAt(position(value) + by * (fine && positions.isEmpty() ? press / finePerStep : press));
        return positions.isEmpty() ? to : std::round(to);
    };
    switch (key) {
    case Qt::Key_Up: return moved(1);
    case Qt::Key_Down: return moved(-1);
    case Qt::Key_PageUp: return moved(positions.isEmpty() ? stepsPerPage : 1);
    case Qt::Key_PageDown: return moved(positions.isEmpty() ? -stepsPerPage : -1);
    case Qt::Key_Home: return min;
    case Qt::Key_End: return max;
    default: return std::nullopt;
    }
}

double Travel::wheeled(double delta, double value) const {
    // A selector moves one position per notch of the wheel.
    if (!positions.isEmpty()) return std::round(std::clamp(value + delta / 10, min, max));
    return valueAt(position(value) + delta / wheelTravel);
}

std::optional<double> Travel::typed(const QString& text) const {
    const QString wanted = text.trimmed();
    for (qsizetype i = 0; i < positions.size(); ++i)
        if (positions[i].compare(wanted, Qt::CaseInsensitive) == 0) return double(i);
    if (!positions.isEmpty()) return std::nullopt;
    const std::optional<double> value = format->parse(wanted);
    return value ? std::optional(std::clamp(*value, min, max)) : std::nullopt;
}

bool Travel::isTypedWith(QChar letter) const {
    const QStringList texts =
        positions.isEmpty() ? QStringList{text(min), text((min + max) / 2), text(max)} : positions;
    return std::any_of(texts.begin(), texts.end(),
                       [letter](const QString& each) { return each.startsWith(letter, Qt::CaseInsensitive); });
}

QString Travel::text(double value) const {
    if (positions.isEmpty()) return format->text(value);
    return positions[std::clamp<qsizetype>(qRound(value), 0, positions.size() - 1)];
}

} // namespace tessik
