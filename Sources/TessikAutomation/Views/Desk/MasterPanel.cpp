#include "TessikAutomation/Views/Desk/MasterPanel.h"

#include "TessikAutomation/Views/Desk/ManualControls.h"
#include "TessikAutomation/Views/Desk/ModulePanel.h"
#include "TessikAutomation/Views/Desk/NamePlate.h"
#include "TessikAutomation/Views/Desk/StripSubject.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Theme/SectionTints.h"

namespace tessik {
namespace {

using namespace Metrics;
using Master = MasterSectionSettings;
using Return = EffectsReturnSettings;

// ---- where things are: two columns of rows, which share what the panel is higher than they need

constexpr int left = 8;
constexpr int leftWidth = 276;
constexpr int right = 300;
constexpr int rightWidth = 300;
constexpr int halfWidth = rightWidth / 2 - 6;
constexpr int secondHalf = right + rightWidth - halfWidth;
constexpr int returnWidth = leftWidth / effectsReturnCount;
constexpr int auxKnob = 34;
constexpr int largeKnob = 46;
constexpr int levelKnob = 58;
constexpr int maxKnobHeight = largeKnob + 24;
constexpr int maxKeyHeight = 27;
constexpr int selectorHeight = 62;
constexpr int maxSelectorHeight = 68;
constexpr int levelHeight = 3 * keyPitch;
constexpr int keyBlockHeight = 3 * 20; // for three rows of keys
constexpr int framePadding = 4;
constexpr int blockGap = 6;
constexpr int maxRowsHeight = 540; // any further height goes to the maker's plate

/// The height left above the rows for the maker's plate.
int plateHeight(int panelHeight) {
    const int rest = panelHeight - maxRowsHeight;
    return rest < namePlateMinHeight ? 0 : rest;
}

/// Rows from the top down. A panel's extra height is distributed by weight.
class Rows {
public:
    int add(int height, double weight) {
        _rows.push_back({height, weight});
        return int(_rows.size()) - 1;
    }
    int count() const { return int(_rows.size()); }
    /// The upper edge of a row's share; for the row after the last, the lower end.
    double top(int row, int panelHeight) const {
        double y = plateHeight(panelHeight) + moduleTop;
        for (int i = 0; i < row; ++i)
            y += _rows[std::size_t(i)].height + share(panelHeight) * _rows[std::size_t(i)].weight;
        return y;
    }
    /// A row's place in the middle of its share, as high as the share but at most `maxHeight`.
    QRect place(int row, int x, int width, int maxHeight, int panelHeight) const {
        const double from = top(row, panelHeight);
        const double room = top(row + 1, panelHeight) - from;
        const int height = std::min(maxHeight, int(room));
        return {x, qRound(from + (room - height) / 2), width, height};
    }

private:
    struct Row {
        int height;
        double weight;
    };
    double share(int panelHeight) const {
        double height = 2 * moduleTop, weight = 0;
        for (const Row& row : _rows) {
            height += row.height;
            weight += row.weight;
        }
        return std::max(0.0, panelHeight - plateHeight(panelHeight) - height) / weight;
    }

    std::vector<Row> _rows;
};

constexpr double keyWeight = 1;
constexpr double knobWeight = 3;
constexpr double keyBlockWeight = 3;
constexpr double gapWeight = 1;

struct Print {
    std::function<QRect(QSize)> place;
    QString text;
    QColor tint;
};

template <typename Record>
struct Field {
    const RecordControl<Record>& control;
    std::function<const Record*(const Master&)> find; ///< null if the record has no such part
    std::function<Record&(Master&)> make;
    QString owner;
    QString idPrefix;
};

template <typename Record>
ControlBinding bindField(const MasterSubject& subject, const Field<Record>& field) {
    MasterSectionStore& store = *subject.store;
    ControlBinding binding = std::visit(
        [&]<typename Value>(Value Record::*member) {
            return ControlBinding{.read =
                                      [&store, field, member] {
                                          const Master master = store.settings.value();
                                          const Record* record = field.find(master);
                                          return ControlValue{double(record ? record->*member : Record().*member), {}};
                                      },
                                  .write =
                                      [&store, field, member](double value) {
                                          Master master = store.settings.value();
                                          field.make(master).*member = Value(value);
                                          store.setSettings(master);
                                      },
                                  .watch =
                                      [&store](const std::function<void()>& changed) {
                                          std::vector<QPropertyNotifier> observers;
                                          observers.push_back(store.settings.addNotifier(changed));
                                          return observers;
                                      }};
        },
        field.control.field);
    nameControl(binding, field.owner, field.control.fullName, subject.history);
    return binding;
}

class Builder {
public:
    using Place = std::function<QRect(QSize)>;

    /// A place in a row of one of the columns; in a block of keys, the `index`-th of `count` rows.
    static Place at(const std::shared_ptr<Rows>& rows, int row, int x, int width, int maxHeight) {
        return [=](QSize panel) { return rows->place(row, x, width, maxHeight, panel.height()); };
    }
    static Place key(const std::shared_ptr<Rows>& rows, int row, int x, int width, int index = 0, int count = 1) {
        return [=](QSize panel) {
            const QRect block = rows->place(row, x, width, count * (maxKeyHeight + keyGap), panel.height());
            const int pitch = block.height() / count;
            return QRect(x, block.y() + index * pitch, width, pitch - keyGap);
        };
    }
    static Place knobPlace(const std::shared_ptr<Rows>& rows, int row, int x, int width) {
        return at(rows, row, x, width, maxKnobHeight);
    }
    /// A frame around the rows from `first` to the last so far.
    void frame(const std::shared_ptr<Rows>& rows, int first, int x, int width) {
        const int last = rows->count();
        frames.push_back([=](QSize panel) {
            const int from = int(rows->top(first, panel.height()));
            return QRect(x, from, width, int(rows->top(last, panel.height())) - from)
                .adjusted(-framePadding, -framePadding / 2, framePadding, 1);
        });
    }
    void title(Place place, const char* text, const QColor& tint) {
        titles.push_back({std::move(place), QString::fromUtf8(text), tint});
    }
    void toggle(bool Master::*field, Place place) {
        const Field<Master> found = master(ManualControls::masterSection().of(field));
        add(found, ModulePanel::toggle(found.control), std::move(place));
    }
    void knob(double Master::*field, Place place, int diameter = knobDiameter) {
        const Field<Master> found = master(ManualControls::masterSection().of(field));
        RotaryKnob view = ModulePanel::knob(found.control);
        view.diameter = diameter;
        add(found, std::move(view), std::move(place));
    }
    void returnToggle(int index, bool Return::*field, Place place) {
        const Field<Return> found = effectsReturn(index, ManualControls::effectsReturn().of(field));
        add(found, ModulePanel::toggle(found.control), std::move(place));
    }
    void returnKnob(int index, double Return::*field, Place place) {
        const Field<Return> found = effectsReturn(index, ManualControls::effectsReturn().of(field));
        RotaryKnob view = ModulePanel::knob(found.control);
        view.diameter = largeKnob;
        add(found, std::move(view), std::move(place));
    }

    ControlTable<MasterSubject> table;
    std::vector<Print> titles;
    std::vector<Place> frames;

private:
    static Field<Master> master(const RecordControl<Master>& control) {
        return {control,
                [](const Master& master) { return &master; },
                [](Master& master) -> Master& { return master; },
                QStringLiteral("Master section"),
                {}};
    }
    static Field<Return> effectsReturn(int index, const RecordControl<Return>& control) {
        return {control,
                [index](const Master& master) {
                    return index < master.effectsReturns.size() ? &master.effectsReturns[index] : nullptr;
                },
                [index](Master& master) -> Return& {
                    while (master.effectsReturns.size() <= index)
                        master.effectsReturns.append(Return());
                    return master.effectsReturns[index];
                },
                QStringLiteral("Effects return %1").arg(index + 1), QStringLiteral("return%1.").arg(index + 1)};
    }
    template <typename Record>
    void add(const Field<Record>& field, auto view, Place place) {
        table.add(field.idPrefix + field.control.id, std::move(view), std::move(place),
                  [field](const MasterSubject& subject) { return bindField(subject, field); });
    }
};

void addReturns(Builder& b, const std::shared_ptr<Rows>& rows) {
    const int title = rows->add(sectionTitlePitch, 0);
    b.title(b.at(rows, title, left, leftWidth, sectionTitleHeight), "EFFECTS RETURNS", SectionTints::effects);
    const int number = rows->add(11, 0.4);
    const int level = rows->add(knobPitch, knobWeight);
    const int pan = rows->add(knobPitch, knobWeight);
    const int groups12 = rows->add(keyPitch, keyWeight);
    const int groups56 = rows->add(keyPitch, keyWeight);
    const int stereo = rows->add(keyPitch, keyWeight);
    const int solo = rows->add(keyPitch, keyWeight);
    for (int i = 0; i < effectsReturnCount; ++i) {
        const int x = left + i * returnWidth + 2;
        const int width = returnWidth - 4;
        const int half = (width - keyGap) / 2;
        const int second = x + half + keyGap;
        b.titles.push_back({b.at(rows, number, x, width, 10), QStringLiteral("RTN %1").arg(i + 1), QColor()});
        b.returnKnob(i, &Return::level, b.knobPlace(rows, level, x, width));
        b.returnKnob(i, &Return::pan, b.knobPlace(rows, pan, x, width));
        b.returnToggle(i, &Return::assignGroup1_2, b.key(rows, groups12, x, half));
        b.returnToggle(i, &Return::assignGroup3_4, b.key(rows, groups12, second, half));
        b.returnToggle(i, &Return::assignGroup5_6, b.key(rows, groups56, x, half));
        b.returnToggle(i, &Return::assignGroup7_8, b.key(rows, groups56, second, half));
        b.returnToggle(i, &Return::assignStereo, b.key(rows, stereo, x, width));
        b.returnToggle(i, &Return::solo, b.key(rows, solo, x, half));
        b.returnToggle(i, &Return::mute, b.key(rows, solo, second, half));
    }
    b.frame(rows, title, left, leftWidth);
}

void addAuxMasters(Builder& b, const std::shared_ptr<Rows>& rows) {
    rows->add(blockGap, gapWeight);
    const int title = rows->add(sectionTitlePitch, 0);
    b.title(b.at(rows, title, left, leftWidth, sectionTitleHeight), "AUX MASTERS", SectionTints::aux);
    const int knobs = rows->add(knobPitch, knobWeight);
    int x = left;
    for (double Master::*field : {&Master::aux1Level, &Master::aux2Level, &Master::aux3Level, &Master::aux4Level,
                                  &Master::aux5Level, &Master::aux6Level}) {
        b.knob(field, b.knobPlace(rows, knobs, x, leftWidth / 6), auxKnob);
        x += leftWidth / 6;
    }
    b.frame(rows, title, left, leftWidth);
}

void addControlRoom(Builder& b, const std::shared_ptr<Rows>& rows) {
    const int title = rows->add(sectionTitlePitch, 0);
    b.title(b.at(rows, title, right, rightWidth, sectionTitleHeight), "CONTROL ROOM", SectionTints::input);
    constexpr int sourceWidth = 48;
    constexpr int keyWidth = 42;
    constexpr int keysX = right + rightWidth - 2 * keyWidth + keyGap;
    bool Master::*const sources[3][3]{{&Master::crSourceAux1, &Master::crSourceAux2, &Master::crSourceAux3},
                                      {&Master::crSourceAux4, &Master::crSourceAux5, &Master::crSourceAux6},
                                      {&Master::crSourceExt7, &Master::crSource2TB, &Master::crSourceStereo}};
    bool Master::*const monitors[2][2]{{&Master::crMono, &Master::crDim}, {&Master::crSpeakerA, &Master::crSpeakerB}};
    const int keys = rows->add(keyBlockHeight, keyBlockWeight);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            b.toggle(sources[i][j], b.key(rows, keys, right + j * sourceWidth, sourceWidth - keyGap, i, 3));
    constexpr int knobX = right + 3 * sourceWidth;
    b.knob(&Master::controlRoomLevel, b.at(rows, keys, knobX, keysX - knobX, levelHeight + 20), levelKnob);
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j)
            b.toggle(monitors[i][j], b.key(rows, keys, keysX + j * keyWidth, keyWidth - keyGap, i, 3));
    b.toggle(&Master::pflEngaged, b.key(rows, keys, keysX, 2 * keyWidth - keyGap, 2, 3));
    const int knobs = rows->add(knobPitch, knobWeight);
    int x = right;
    for (double Master::*field : {&Master::controlRoomSoloLevel, &Master::controlRoomPflLevel, &Master::phonesLevel}) {
        b.knob(field, b.knobPlace(rows, knobs, x, rightWidth / 3), largeKnob);
        x += rightWidth / 3;
    }
    b.frame(rows, title, right, rightWidth);
}

/// A block half a column wide: a knob with three keys beside it.
void addKnobAndKeys(Builder& b, const std::shared_ptr<Rows>& rows, int row, int x, double Master::*knob,
                    const std::array<bool Master::*, 3>& keys) {
    constexpr int knobWidth = 64;
    for (int i = 0; i < 3; ++i)
        b.toggle(keys[std::size_t(i)], b.key(rows, row, x + knobWidth, halfWidth - knobWidth, i, 3));
    b.knob(knob, b.knobPlace(rows, row, x, knobWidth), largeKnob);
}

void addStudioAndTalkback(Builder& b, const std::shared_ptr<Rows>& rows) {
    rows->add(blockGap, gapWeight);
    const int title = rows->add(sectionTitlePitch, 0);
    b.title(b.at(rows, title, right, halfWidth, sectionTitleHeight), "STUDIO", SectionTints::monitor);
    b.title(b.at(rows, title, secondHalf, halfWidth, sectionTitleHeight), "TALKBACK", SectionTints::eqLowMid);
    const int row = rows->add(keyBlockHeight, keyBlockWeight);
    addKnobAndKeys(b, rows, row, right, &Master::studioLevel,
                   {&Master::studioCR, &Master::studioMono, &Master::studioOn});
    addKnobAndKeys(b, rows, row, secondHalf, &Master::talkbackMicLevel,
                   {&Master::talkbackAux1_4, &Master::talkbackSlate, &Master::talkbackTB});
    b.frame(rows, title, right, halfWidth);
    b.frame(rows, title, secondHalf, halfWidth);
}

void addMeterAndOscillator(Builder& b, const std::shared_ptr<Rows>& rows) {
    constexpr int selectorWidth = 96;
    rows->add(blockGap, gapWeight);
    const int title = rows->add(sectionTitlePitch, 0);
    b.title(b.at(rows, title, right, halfWidth, sectionTitleHeight), "METER SELECT", SectionTints::master);
    b.title(b.at(rows, title, secondHalf, halfWidth, sectionTitleHeight), "OSCILLATOR", SectionTints::master);
    const int row = rows->add(selectorHeight, keyBlockWeight);
    const std::array<bool Master::*, 3> keys{&Master::meterStudio, &Master::meterCR, &Master::meterStereo};
    for (int i = 0; i < 3; ++i)
        b.toggle(keys[std::size_t(i)], b.key(rows, row, right + 20, halfWidth - 40, i, 3));
    b.knob(&Master::oscFrequencyPosition, b.at(rows, row, secondHalf, selectorWidth, maxSelectorHeight), auxKnob);
    b.toggle(&Master::oscTone, b.key(rows, row, secondHalf + selectorWidth, halfWidth - selectorWidth, 1, 3));
    b.frame(rows, title, right, halfWidth);
    b.frame(rows, title, secondHalf, halfWidth);
}

void paintFrame(Canvas& canvas, const QRect& rect) {
    const Look& look = canvas.look;
    QPainter& painter = canvas.painter;
    const QRectF frame = QRectF(canvas.px(QRectF(rect))).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = 4 * canvas.scale;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(withAlpha(Qt::white, look.isDark() ? 0.05 : 0.22), canvas.line()));
    painter.drawRoundedRect(frame.translated(0, canvas.line()), radius, radius);
    painter.setBrush(withAlpha(Qt::white, look.isDark() ? 0.022 : 0.06));
    painter.setPen(QPen(withAlpha(Qt::black, look.isDark() ? 0.55 : 0.32), canvas.line()));
    painter.drawRoundedRect(frame, radius, radius);
}

void paintMetal(Canvas& canvas, QSize panel) {
    const QRect whole = canvas.px(QRectF(QPointF(), panel));
    Parts::modulePanel(canvas.painter, whole, canvas.scale, canvas.look.palette.masterPanelBackground, canvas.look);
}

ControlTable<MasterSubject> makeTable() {
    Builder b;
    const auto leftRows = std::make_shared<Rows>();
    const auto rightRows = std::make_shared<Rows>();
    addReturns(b, leftRows);
    addAuxMasters(b, leftRows);
    addControlRoom(b, rightRows);
    addStudioAndTalkback(b, rightRows);
    addMeterAndOscillator(b, rightRows);
    b.table.kind.paintFace = [titles = b.titles, frames = b.frames](Canvas& canvas, QSize panel) {
        paintMetal(canvas, panel);
        if (const int plate = plateHeight(panel.height()))
            paintNamePlate(canvas, {0, moduleTop, panel.width(), plate - moduleTop});
        for (const auto& frame : frames)
            paintFrame(canvas, frame(panel));
        for (const Print& title : titles) {
            const QRect place = title.place(panel);
            if (title.tint.isValid())
                ModulePanel::paintTitle(canvas, place, title.text, title.tint);
            else
                Type::draw(canvas.painter, canvas.px(QRectF(place)), Qt::AlignHCenter, title.text,
                           Type::font(8 * canvas.scale, QFont::DemiBold, 0.4 * canvas.scale),
                           canvas.look.tints.moduleLegend);
        }
    };
    return std::move(b.table);
}

} // namespace

const PanelKind& foldedMasterKind() {
    static const PanelKind kind{.paintFace =
                                    [](Canvas& canvas, QSize panel) {
                                        paintMetal(canvas, panel);
                                        if (panel.height() >= namePlateMinHeight)
                                            paintNamePlate(canvas, QRect(QPoint(), panel));
                                    },
                                .controls = {}};
    return kind;
}

const ControlTable<MasterSubject>& masterPanelTable() {
    static const ControlTable<MasterSubject> table = makeTable();
    return table;
}

} // namespace tessik
