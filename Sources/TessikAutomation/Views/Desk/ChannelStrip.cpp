#include "TessikAutomation/Views/Desk/ChannelStrip.h"

#include "TessikAutomation/Views/Controls/FaderTrackView.h"
#include "TessikAutomation/Views/Controls/Indicators.h"
#include "TessikAutomation/Views/Controls/ScribbleStrip.h"
#include "TessikAutomation/Views/Desk/ManualControls.h"
#include "TessikAutomation/Views/Desk/ModulePanel.h"
#include "TessikAutomation/Views/Desk/ScribbleFocusCoordinator.h"
#include "TessikAutomation/Views/Desk/StripSelection.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikKit/Models/FaderDBCalibration.h"

#include <QGuiApplication>

#include <cmath>

namespace tessik {
namespace {

using namespace Metrics;
using Table = ControlTable<StripSubject>;

// ---- places, from the upper edge down to the fader and from the lower edge up to it

/// Beside a folded master section a strip is little more than its fader.
bool isFolded(QSize strip) { return strip.width() < groupStripWidth / 2 + stripMargin; }
int margin(QSize strip) { return strip.width() < inputChannelStripWidth ? narrowStripMargin : stripMargin; }
QRect row(QSize strip, int top, int height) { return {margin(strip), top, strip.width() - 2 * margin(strip), height}; }

QRect numberRect(QSize strip) { return {0, barTop + 1, strip.width(), numberHeight}; }
QRect scribbleRect(QSize strip) { return row(strip, barTop + numberHeight + 1, scribbleHeight); }
QRect bypassRect(QSize strip) { return row(strip, bypassTop, keyHeight); }
/// On groups and stereo, EQ stands beside BYPASS.
QRect eqBesideRect(QSize strip) {
    return isFolded(strip) ? QRect() : QRect(bypassRect(strip).topLeft(), QSize(eqBesideWidth, keyHeight));
}
QRect bypassBesideRect(QSize strip) {
    return bypassRect(strip).adjusted(isFolded(strip) ? 0 : eqBesideWidth + keyGap - 1, 0, 0, 0);
}
QRect monMuteRect(QSize strip) {
    if (isFolded(strip)) return row(strip, foldedMutesTop, foldedKeyHeight);
    QRect half = row(strip, mutesTop, keyHeight);
    half.setWidth((half.width() - keyGap) / 2);
    return half;
}
QRect auxMuteRect(QSize strip) {
    if (isFolded(strip)) return monMuteRect(strip).translated(0, foldedKeyHeight + 1);
    return row(strip, mutesTop, keyHeight).adjusted(monMuteRect(strip).width() + keyGap, 0, 0, 0);
}
QRect readoutRect(QSize strip) { return row(strip, strip.height() - stripBottom - readoutHeight, readoutHeight); }
QRect nullRect(QSize strip) { return row(strip, readoutRect(strip).top() - rowGap - nullHeight, nullHeight); }
QRect muteRect(QSize strip) { return row(strip, nullRect(strip).top() - rowGap - muteHeight, muteHeight); }
QRect faderRect(QSize strip) { return {0, faderTop, strip.width(), muteRect(strip).top() - rowGap - faderTop}; }

void paintFace(Canvas& canvas, QSize strip) {
    const Palette& palette = canvas.look.palette;
    const QRect whole = canvas.px(QRectF(QPointF(), strip));
    const int bar = canvas.px(barTop);
    const int barEnd = canvas.px(barTop + barHeight);
    Parts::modulePanel(canvas.painter, QRect(0, 0, whole.width(), bar), canvas.scale, palette.channelStripBackground,
                       canvas.look);
    Parts::modulePanel(canvas.painter, QRect(0, barEnd, whole.width(), whole.height() - barEnd), canvas.scale,
                       palette.faderBankBackground, canvas.look);
    Parts::aluminium(canvas.painter, QRect(0, bar, whole.width(), barEnd - bar), canvas.scale, canvas.look);
    Parts::barShadow(canvas.painter, QRect(0, barEnd, whole.width(), canvas.px(barShadowHeight)));
}

/// Whatever belongs to the controls is printed only on strips that have them.
void paintPrintedFace(Canvas& canvas, QSize strip) {
    paintFace(canvas, strip);
    if (isFolded(strip)) return;
    const QRect title = canvas.px(QRectF(row(strip, mutesTitleTop, 10)));
    Type::draw(canvas.painter, title, Qt::AlignHCenter, QStringLiteral("MUTES"),
               Type::font(8 * canvas.scale, QFont::DemiBold, 0.9 * canvas.scale), canvas.look.tints.legend);
}

// ---- what the controls are bound to

auto switchOf(const QString& fullName, ChannelState::Switch which) {
    return [fullName, which](const StripSubject& subject) { return bindSwitch(subject, fullName, which); };
}

ControlBinding bindScribble(const StripSubject& subject) {
    const ChannelState& channel = *subject.channel;
    ControlBinding binding{.read =
                               [subject] {
                                   const auto labels = subject.labels->labelsByChannelID.value();
                                   const auto label = labels.constFind(subject.channel->id);
                                   return ScribbleStrip::value(label == labels.constEnd() ? std::nullopt
                                                                                          : std::optional(*label));
                               },
                           .write = [subject](double) { subject.scribbles->editingID = subject.channel->id; },
                           .watch = watching(subject.labels->labelsByChannelID)};
    nameControl(binding, spokenName(channel.kind), QStringLiteral("scribble strip"), nullptr);
    return binding;
}

ControlBinding bindNumber(const StripSubject& subject) {
    ControlBinding binding{.read =
                               [subject] {
                                   return ControlValue{subject.selection->contains(subject.channel->id) ? 1.0 : 0.0,
                                                       subject.channel->displayName};
                               },
                           .write =
                               [subject](double) {
                                   subject.selection->click(subject.channel->id, QGuiApplication::keyboardModifiers(),
                                                            subject.scribbles->order());
                               },
                           .watch = watching(subject.selection->selectedIDs)};
    nameControl(binding, spokenName(subject.channel->kind), QStringLiteral("selection"), nullptr);
    return binding;
}

ControlBinding bindFader(const StripSubject& subject) {
    ChannelState& channel = *subject.channel;
    return {.name = spokenName(channel.kind) + QStringLiteral(", fader"),
            .read =
                [&channel] {
                    return ControlValue{double(channel.faderValue.value()), {}};
                },
            .write = [subject](double value) { subject.editor->setFader(*subject.channel, value); },
            .watch = watching(channel.faderValue)};
}

/// The fader's distance from its target; "to -12.0 dB" if one of them is off.
QString nullDistance(const ChannelState& channel) {
    const std::optional<int> target = channel.nullTarget.value();
    if (!target || channel.nullMatch() == ChannelState::NullMatch::matched) return {};
    const auto from = FaderDBCalibration::decibels(channel.faderValue);
    const auto to = FaderDBCalibration::decibels(*target);
    if (!from || !to) return QStringLiteral("to %1 dB").arg(FaderDBCalibration::displayString(*target));
    return QStringLiteral("%1 dB").arg(std::abs(*to - *from), 0, 'f', 1);
}

ControlBinding bindNull(const StripSubject& subject) {
    ChannelState& channel = *subject.channel;
    return {.name = spokenName(channel.kind) + QStringLiteral(", NULL"),
            .read =
                [&channel] {
                    return ControlValue{double(channel.nullMatch()), nullDistance(channel)};
                },
            .watch = watching(channel.faderValue, channel.nullTarget)};
}

ControlBinding bindReadout(const StripSubject& subject) {
    ChannelState& channel = *subject.channel;
    return {.name = spokenName(channel.kind) + QStringLiteral(", level"),
            .read =
                [&channel] {
                    return ControlValue{0, FaderDBCalibration::displayString(channel.faderValue)};
                },
            .watch = watching(channel.faderValue)};
}

Table makeTable(ChannelKind::Case kind, QColor Tints::*capTint) {
    Table table;
    table.kind.paintFace = paintPrintedFace;
    const bool isInput = kind == ChannelKind::Case::input;
    const auto& bypass = ManualControls::channel().of(&ManualChannelSettings::bypass);
    if (!isInput)
        table.add(QStringLiteral("eqOn"), ConsoleToggle(QStringLiteral("EQ"), &Tints::ledGreen, true), eqBesideRect,
                  switchOf(QStringLiteral("EQ"), &ChannelState::eqOn));
    table.add(bypass.id, ModulePanel::toggle(bypass, QStringLiteral("BYP")), isInput ? bypassRect : bypassBesideRect,
              [&bypass](const StripSubject& subject) { return bindManual(subject, bypass); });
    table.add(QStringLiteral("number"), ChannelNumber(), numberRect, bindNumber);
    table.add(QStringLiteral("scribble"), ScribbleStrip(), scribbleRect, bindScribble);
    table.add(QStringLiteral("monMuted"), ConsoleToggle(QStringLiteral("MON"), &Tints::ledRed, true), monMuteRect,
              switchOf(QStringLiteral("monitor MUTE"), &ChannelState::monMuted));
    table.add(QStringLiteral("auxMuted"), ConsoleToggle(QStringLiteral("AUX"), &Tints::ledRed, true), auxMuteRect,
              switchOf(QStringLiteral("aux MUTE"), &ChannelState::auxMuted));
    FaderTrackView fader;
    fader.accentTint = capTint;
    table.add(QStringLiteral("fader"), std::move(fader), faderRect, bindFader);
    table.add(QStringLiteral("chanMuted"), ConsoleToggle(QStringLiteral("MUTE"), &Tints::ledRed, false), muteRect,
              switchOf(QStringLiteral("MUTE"), &ChannelState::chanMuted));
    table.add(QStringLiteral("null"), NullIndicatorRow(), nullRect, bindNull);
    table.add(QStringLiteral("readout"), LevelReadout(), readoutRect, bindReadout);
    return table;
}

} // namespace

const Table& channelStripTable(ChannelKind::Case kind) {
    static const Table input = makeTable(ChannelKind::Case::input, &Tints::capLine);
    static const Table group = makeTable(ChannelKind::Case::group, &Tints::groupLine);
    static const Table stereo = makeTable(ChannelKind::Case::stereo, &Tints::stereoLine);
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
