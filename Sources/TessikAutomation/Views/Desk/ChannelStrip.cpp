#include "TessikAutomation/Views/Desk/ChannelStrip.h"

#include "TessikAutomation/Views/Controls/ConsoleToggle.h"
#include "TessikAutomation/Views/Controls/FaderTrackView.h"
#include "TessikAutomation/Views/Controls/Indicators.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikKit/Models/FaderDBCalibration.h"

namespace tessik {
namespace {

using namespace Metrics;
using Table = ControlTable<ChannelStripSubject>;

// ---- places, from the upper edge down to the fader and from the lower edge up to it

QRect row(QSize strip, int top, int height) { return {stripMargin, top, strip.width() - 2 * stripMargin, height}; }

QRect numberRect(QSize strip) { return {0, 0, strip.width(), barHeight}; }
auto keyRect(int index) {
    return [index](QSize strip) { return row(strip, keysTop + index * keyPitch, keyHeight); };
}
QRect readoutRect(QSize strip) { return row(strip, strip.height() - stripBottom - readoutHeight, readoutHeight); }
QRect nullRect(QSize strip) { return row(strip, readoutRect(strip).top() - rowGap - nullHeight, nullHeight); }
QRect muteRect(QSize strip) { return row(strip, nullRect(strip).top() - rowGap - muteHeight, muteHeight); }
QRect faderRect(QSize strip) { return {0, faderTop, strip.width(), muteRect(strip).top() - rowGap - faderTop}; }

void paintFace(Canvas& canvas, QSize strip) {
    const Palette& palette = canvas.look.palette;
    const QRect whole = canvas.px(QRectF(QPointF(), strip));
    const int keys = canvas.px(barHeight);
    const int bank = canvas.px(faderTop - 6);
    Parts::modulePanel(canvas.painter, QRect(0, keys, whole.width(), bank - keys), canvas.scale,
                       palette.channelStripBackground, canvas.look);
    Parts::modulePanel(canvas.painter, QRect(0, bank, whole.width(), whole.height() - bank), canvas.scale,
                       palette.faderBankBackground, canvas.look);
    // A groove milled between the two.
    canvas.painter.fillRect(QRect(0, bank - canvas.line(), whole.width(), canvas.line()), withAlpha(Qt::black, 0.45));
    canvas.painter.fillRect(QRect(0, bank, whole.width(), canvas.line()),
                            withAlpha(Qt::white, canvas.look.isDark() ? 0.07 : 0.4));
    Parts::aluminium(canvas.painter, QRect(0, 0, whole.width(), keys), canvas.scale, canvas.look);
    Parts::barShadow(canvas.painter, QRect(0, keys, whole.width(), canvas.px(barShadowHeight)));
}

// ---- what the controls are bound to

ControlBinding bindSwitch(const ChannelStripSubject& subject, const QString& what, DeskEditor::Switch which) {
    ChannelState& channel = *subject.channel;
    return {.name = spokenName(channel.kind) + what,
            .read =
                [&channel, which] {
                    return ControlValue{(channel.*which).value() ? 1.0 : 0.0, {}};
                },
            .write = [subject, which](double on) { subject.editor->setSwitch(*subject.channel, which, on != 0); },
            .watch = watching(channel.*which)};
}

auto switchOf(const QString& what, DeskEditor::Switch which) {
    return [what, which](const ChannelStripSubject& subject) { return bindSwitch(subject, what, which); };
}

ControlBinding bindNumber(const ChannelStripSubject& subject) {
    ChannelState& channel = *subject.channel;
    return {.name = spokenName(channel.kind), .read = [&channel] { return ControlValue{0, channel.displayName}; }};
}

ControlBinding bindFader(const ChannelStripSubject& subject) {
    ChannelState& channel = *subject.channel;
    return {.name = spokenName(channel.kind) + QStringLiteral(" fader"),
            .read =
                [&channel] {
                    return ControlValue{double(channel.faderValue.value()), {}};
                },
            .write = [subject](double value) { subject.editor->setFader(*subject.channel, value); },
            .watch = watching(channel.faderValue)};
}

ControlBinding bindNull(const ChannelStripSubject& subject) {
    ChannelState& channel = *subject.channel;
    return {.name = spokenName(channel.kind) + QStringLiteral(" NULL"),
            .read =
                [&channel] {
                    return ControlValue{double(channel.nullMatch()), {}};
                },
            .watch = watching(channel.faderValue, channel.nullTarget)};
}

ControlBinding bindReadout(const ChannelStripSubject& subject) {
    ChannelState& channel = *subject.channel;
    return {.name = spokenName(channel.kind) + QStringLiteral(" level"),
            .read =
                [&channel] {
                    return ControlValue{0, FaderDBCalibration::displayString(channel.faderValue)};
                },
            .watch = watching(channel.faderValue)};
}

Table makeTable(QColor Tints::*capTint) {
    Table table;
    table.kind.paintFace = paintFace;
    table.add(QStringLiteral("number"), ChannelNumber(), numberRect, bindNumber);
    table.add(QStringLiteral("eqOn"), ConsoleToggle(QStringLiteral("EQ"), &Tints::ledGreen, true), keyRect(0),
              switchOf(QStringLiteral(" EQ"), &ChannelState::eqOn));
    table.add(QStringLiteral("monMuted"), ConsoleToggle(QStringLiteral("MON MUTE"), &Tints::ledRed, true), keyRect(1),
              switchOf(QStringLiteral(" monitor MUTE"), &ChannelState::monMuted));
    table.add(QStringLiteral("auxMuted"), ConsoleToggle(QStringLiteral("AUX MUTE"), &Tints::ledAmber, true), keyRect(2),
              switchOf(QStringLiteral(" aux MUTE"), &ChannelState::auxMuted));
    FaderTrackView fader;
    fader.accentTint = capTint;
    table.add(QStringLiteral("fader"), std::move(fader), faderRect, bindFader);
    table.add(QStringLiteral("chanMuted"), ConsoleToggle(QStringLiteral("MUTE"), &Tints::ledRed, false), muteRect,
              switchOf(QStringLiteral(" MUTE"), &ChannelState::chanMuted));
    table.add(QStringLiteral("null"), NullIndicatorRow(), nullRect, bindNull);
    table.add(QStringLiteral("readout"), LevelReadout(), readoutRect, bindReadout);
    return table;
}

} // namespace

QString spokenName(ChannelKind kind) {
    switch (kind.kind()) {
    case ChannelKind::Case::input: return QStringLiteral("Channel %1").arg(kind.number());
    case ChannelKind::Case::group: return QStringLiteral("Group %1").arg(kind.number());
    case ChannelKind::Case::stereo: break;
    }
    return QStringLiteral("Stereo");
}

const Table& channelStripTable(ChannelKind::Case kind) {
    static const Table input = makeTable(&Tints::capLine);
    static const Table group = makeTable(&Tints::groupLine);
    static const Table stereo = makeTable(&Tints::stereoLine);
    switch (kind) {
    case ChannelKind::Case::input: return input;
    case ChannelKind::Case::group: return group;
    case ChannelKind::Case::stereo: break;
    }
    return stereo;
}

const PanelKind& blankStripKind() {
    static const PanelKind kind{.paintFace = paintFace, .controls = {}};
    return kind;
}

} // namespace tessik
