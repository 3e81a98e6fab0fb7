#include "TessikAutomation/Views/Desk/InputModule.h"

#include "TessikAutomation/Views/Controls/MiniFader.h"
#include "TessikAutomation/Views/Desk/ManualControls.h"
#include "TessikAutomation/Views/Desk/ModulePanel.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Theme/SectionTints.h"

namespace tessik {
namespace {

using namespace Metrics;
using Settings = ManualChannelSettings;

/// A place in a row of `columns` equal columns, `span` of them wide.
struct Cell {
    int column, columns, span = 1;
};

struct Title {
    int y;
    QString text;
    QColor tint;
};

/// Builds the module from the top down.
class Builder {
public:
    void section(const char* title, const QColor& tint) {
        if (!titles.empty()) y += sectionGap;
        titles.push_back({y, QString::fromUtf8(title), tint});
        y += sectionTitlePitch;
    }
    void toggle(bool Settings::*field, Cell cell) { toggle(field, cell, y, keyHeight); }
    void toggle(bool Settings::*field, Cell cell, int top, int height) {
        const auto& control = ManualControls::channel().of(field);
        add(control, ModulePanel::toggle(control), keyPlace(cell, top, height));
    }
    void keysDone() { y += keyPitch; }
    void knob(double Settings::*field, Cell cell) {
        const auto& control = ManualControls::channel().of(field);
        add(control, ModulePanel::knob(control), place(cell, y, knobPitch));
    }
    void knobsDone() { y += knobPitch; }

    void add(const RecordControl<Settings>& control, auto view, std::function<QRect(QSize)> where) {
        table.add(control.id, std::move(view), std::move(where),
                  [&control](const StripSubject& subject) { return bindManual(subject, control); });
    }

    static std::function<QRect(QSize)> place(Cell cell, int top, int height) {
        return [cell, top, height](QSize panel) {
            const int width = panel.width() - 2 * stripMargin;
            const int left = width * cell.column / cell.columns;
            return QRect(stripMargin + left, top, width * (cell.column + cell.span) / cell.columns - left, height);
        };
    }
    /// The same with a gap between keys.
    static std::function<QRect(QSize)> keyPlace(Cell cell, int top, int height) {
        return [whole = place(cell, top, height), cell](QSize panel) {
            return whole(panel).adjusted(cell.column > 0 ? keyGap / 2 : 0, 0,
                                         cell.column + cell.span < cell.columns ? -(keyGap - keyGap / 2) : 0, 0);
        };
    }

    ControlTable<StripSubject> table;
    std::vector<Title> titles;
    int y = moduleTop;
};

Builder makeModule() {
    using S = Settings;
    Builder b;
    b.section("INPUT", SectionTints::input);
    b.toggle(&S::phantomPower, {0, 2});
    b.toggle(&S::pad, {1, 2});
    b.keysDone();
    b.knob(&S::micTrim, {0, 2});
    b.knob(&S::lineTrim, {1, 2});
    b.knobsDone();
    b.toggle(&S::lineSource, {0, 3});
    b.toggle(&S::flip, {1, 3});
    b.toggle(&S::hpfOn, {2, 3});
    b.keysDone();

    b.section("EQUALIZER", SectionTints::eqHigh);
    b.knob(&S::eq10kGain, {0, 2});
    b.knobsDone();
    b.knob(&S::eqHiMidGain, {0, 2});
    b.knob(&S::eqHiMidFreq, {1, 2});
    b.knobsDone();
    b.knob(&S::eqLoMidGain, {0, 2});
    b.knob(&S::eqLoMidFreq, {1, 2});
    b.knobsDone();
    b.knob(&S::eq100Gain, {0, 2});
    b.table.add(
        QStringLiteral("eqOn"), ConsoleToggle(QStringLiteral("EQ"), &Tints::ledGreen, true),
        Builder::keyPlace({1, 2}, b.y + (knobPitch - keyHeight) / 2, keyHeight),
        [](const StripSubject& subject) { return bindSwitch(subject, QStringLiteral("EQ"), &ChannelState::eqOn); });
    b.knobsDone();

    b.section("AUX SENDS", SectionTints::aux);
    b.knob(&S::aux1_3Level, {0, 2});
    b.knob(&S::aux2_4Level, {1, 2});
    b.knobsDone();
    b.toggle(&S::aux3_4Select, {0, 3});
    b.toggle(&S::auxMonSource, {1, 3});
    b.toggle(&S::auxPostFader, {2, 3});
    b.keysDone();
    b.knob(&S::aux5Level, {0, 2});
    b.knob(&S::aux6Level, {1, 2});
    b.knobsDone();

    b.section("MONITOR", SectionTints::monitor);
    b.toggle(&S::monitorSourceInput, {0, 3});
    b.toggle(&S::monitorSourcePre, {1, 3});
    b.toggle(&S::monitorSourceGroup, {2, 3});
    b.keysDone();
    const auto& fader = ManualControls::channel().of(&S::monitorFaderLevel);
    std::vector<MiniFader::Mark> marks;
    for (const int mark : {10, 5, 0})
        marks.push_back({QString::number(mark), mark / 10.0});
    b.add(fader, MiniFader(fader.title, fader.travel, std::move(marks), blend(fader.tint, Qt::white, 0.5)),
          Builder::place({0, 2}, b.y, miniFaderHeight));
    const auto& pan = ManualControls::channel().of(&S::monitorPan);
    b.add(pan, ModulePanel::knob(pan), Builder::place({1, 2}, b.y + miniFaderHeight - knobPitch, knobPitch));
    b.y += miniFaderHeight;

    b.section("OUTPUT", SectionTints::output);
    b.toggle(&S::assignGroup1_2, {0, 3});
    b.toggle(&S::assignGroup3_4, {1, 3});
    b.toggle(&S::assignGroup5_6, {2, 3});
    b.keysDone();
    b.toggle(&S::assignGroup7_8, {0, 3});
    b.toggle(&S::assignStereo, {1, 3, 2});
    b.keysDone();
    b.knob(&S::mainPan, {0, 2});
    b.toggle(&S::solo, {1, 2}, b.y, keyHeight);
    b.toggle(&S::manualMute, {1, 2}, b.y + keyPitch, keyHeight);
    b.knobsDone();
    b.y += moduleBottom;

    b.table.kind.paintFace = [titles = b.titles](Canvas& canvas, QSize panel) {
        blankModuleKind().paintFace(canvas, panel);
        for (const Title& title : titles)
            ModulePanel::paintTitle(canvas, {stripMargin, title.y, panel.width() - 2 * stripMargin, sectionTitleHeight},
                                    title.text, title.tint);
    };
    return b;
}

const Builder& module() {
    static const Builder built = makeModule();
    return built;
}

} // namespace

const ControlTable<StripSubject>& inputModuleTable() { return module().table; }
int inputModuleHeight() { return module().y; }

const PanelKind& blankModuleKind() {
    static const PanelKind kind{.paintFace =
                                    [](Canvas& canvas, QSize panel) {
                                        Parts::modulePanel(canvas.painter, canvas.px(QRectF(QPointF(), panel)),
                                                           canvas.scale, canvas.look.palette.channelStripBackground,
                                                           canvas.look);
                                    },
                                .controls = {}};
    return kind;
}

} // namespace tessik
