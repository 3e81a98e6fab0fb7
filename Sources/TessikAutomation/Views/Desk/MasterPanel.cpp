#include "TessikAutomation/Views/Desk/MasterPanel.h"

#include "TessikAutomation/Views/Desk/ManualControls.h"
#include "TessikAutomation/Views/Desk/ModulePanel.h"
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
constexpr int returnWidth = leftWidth / effectsReturnCount;
constexpr int bigKnob = 42;
constexpr int selectorHeight = 72;

/// Rows from the top down. What the panel has beyond their heights is shared by weight, and a row stands in the middle
/// of its share.
class Rows {
public:
    int add(int height, double weight) {
        _rows.push_back({height, weight});
        return int(_rows.size()) - 1;
    }
    int top(int row, int panelHeight) const {
        double height = moduleTop, weight = 0;
        for (const Row& one : _rows) {
            height += one.height;
            weight += one.weight;
        }
        const double share = std::max(0.0, panelHeight - height) / weight;
        double y = moduleTop;
        for (int i = 0; i < row; ++i)
            y += _rows[std::size_t(i)].height + share * _rows[std::size_t(i)].weight;
        return qRound(y + share * _rows[std::size_t(row)].weight / 2);
    }

private:
    struct Row {
        int height;
        double weight;
    };
    std::vector<Row> _rows;
};

constexpr double keyWeight = 0.5;
constexpr double knobWeight = 2;
constexpr double titleWeight = 0.4;

struct Print {
    std::function<QRect(QSize)> place;
    QString text;
    QColor tint;
};

template <typename Record>
struct Field {
    const RecordControl<Record>& control;
    std::function<const Record*(const Master&)> find; ///< null where the record has no such part
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
                                          const Master master = store.settings();
                                          const Record* record = field.find(master);
                                          return ControlValue{double(record ? record->*member : Record().*member), {}};
                                      },
                                  .write =
                                      [&store, field, member](double value) {
                                          Master master = store.settings();
                                          field.make(master).*member = Value(value);
                                          store.setSettings(master);
                                      },
                                  .watch =
                                      [&store](const std::function<void()>& changed) {
                                          std::vector<QPropertyNotifier> observers;
                                          observers.push_back(store.bindableSettings().addNotifier(changed));
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

    /// A place in a row of one of the columns.
    Place at(const std::shared_ptr<Rows>& rows, int row, int x, int width, int height, int down = 0) {
        return [=](QSize panel) { return QRect(x, rows->top(row, panel.height()) + down, width, height); };
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
        add(found, ModulePanel::knob(found.control), std::move(place));
    }

    ControlTable<MasterSubject> table;
    std::vector<Print> titles;

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
    b.title(b.at(rows, rows->add(sectionTitlePitch, titleWeight), left, leftWidth, sectionTitleHeight),
            "EFFECTS RETURNS", SectionTints::effects);
    const int number = rows->add(12, 0);
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
        const auto whole = b.at(rows, number, x, width, 10);
        b.titles.push_back({whole, QStringLiteral("RTN %1").arg(i + 1), QColor()});
        b.returnKnob(i, &Return::level, b.at(rows, level, x, width, knobPitch));
        b.returnKnob(i, &Return::pan, b.at(rows, pan, x, width, knobPitch));
        b.returnToggle(i, &Return::assignGroup1_2, b.at(rows, groups12, x, half, keyHeight));
        b.returnToggle(i, &Return::assignGroup3_4, b.at(rows, groups12, second, half, keyHeight));
        b.returnToggle(i, &Return::assignGroup5_6, b.at(rows, groups56, x, half, keyHeight));
        b.returnToggle(i, &Return::assignGroup7_8, b.at(rows, groups56, second, half, keyHeight));
        b.returnToggle(i, &Return::assignStereo, b.at(rows, stereo, x, width, keyHeight));
        b.returnToggle(i, &Return::solo, b.at(rows, solo, x, half, keyHeight));
        b.returnToggle(i, &Return::mute, b.at(rows, solo, second, half, keyHeight));
    }
}

void addAuxMasters(Builder& b, const std::shared_ptr<Rows>& rows) {
    rows->add(4, 0.5);
    b.title(b.at(rows, rows->add(sectionTitlePitch, titleWeight), left, leftWidth, sectionTitleHeight), "AUX MASTERS",
            SectionTints::aux);
    const int knobs = rows->add(knobPitch, knobWeight);
    int x = left;
    for (double Master::*field : {&Master::aux1Level, &Master::aux2Level, &Master::aux3Level, &Master::aux4Level,
                                  &Master::aux5Level, &Master::aux6Level}) {
        b.knob(field, b.at(rows, knobs, x, leftWidth / 6, knobPitch));
        x += leftWidth / 6;
    }
}

void addControlRoom(Builder& b, const std::shared_ptr<Rows>& rows) {
    b.title(b.at(rows, rows->add(sectionTitlePitch, titleWeight), right, rightWidth, sectionTitleHeight),
            "CONTROL ROOM", SectionTints::input);
    constexpr int sourceWidth = 48;
    constexpr int keysX = right + rightWidth - 2 * 42;
    bool Master::*const sources[3][3]{{&Master::crSourceAux1, &Master::crSourceAux2, &Master::crSourceAux3},
                                      {&Master::crSourceAux4, &Master::crSourceAux5, &Master::crSourceAux6},
                                      {&Master::crSourceExt7, &Master::crSource2TB, &Master::crSourceStereo}};
    bool Master::*const monitors[2][2]{{&Master::crMono, &Master::crDim}, {&Master::crSpeakerA, &Master::crSpeakerB}};
    const int keys = rows->add(3 * keyPitch, knobWeight);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            b.toggle(sources[i][j],
                     b.at(rows, keys, right + j * sourceWidth, sourceWidth - keyGap, keyHeight, i * keyPitch));
    constexpr int knobX = right + 3 * sourceWidth;
    b.knob(&Master::controlRoomLevel, b.at(rows, keys, knobX, keysX - knobX, 3 * keyPitch - 2), bigKnob);
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j)
            b.toggle(monitors[i][j], b.at(rows, keys, keysX + j * 42, 42 - keyGap, keyHeight, i * keyPitch));
    b.toggle(&Master::pflEngaged, b.at(rows, keys, keysX, 2 * 42 - keyGap, keyHeight, 2 * keyPitch));
    const int knobs = rows->add(knobPitch, knobWeight);
    b.knob(&Master::controlRoomSoloLevel, b.at(rows, knobs, right, rightWidth / 3, knobPitch));
    b.knob(&Master::controlRoomPflLevel, b.at(rows, knobs, right + rightWidth / 3, rightWidth / 3, knobPitch));
    b.knob(&Master::phonesLevel, b.at(rows, knobs, right + 2 * rightWidth / 3, rightWidth / 3, knobPitch));
}

void addStudioAndTalkback(Builder& b, const std::shared_ptr<Rows>& rows) {
    constexpr int width = rightWidth / 2 - 4;
    constexpr int second = right + rightWidth - width;
    constexpr int knobWidth = 64;
    rows->add(3, 0.5);
    const int titles = rows->add(sectionTitlePitch, titleWeight);
    b.title(b.at(rows, titles, right, width, sectionTitleHeight), "STUDIO", SectionTints::monitor);
    b.title(b.at(rows, titles, second, width, sectionTitleHeight), "TALKBACK", SectionTints::eqLowMid);
    const int keys = rows->add(3 * keyPitch, knobWeight);
    const auto column = [&](int x, std::initializer_list<bool Master::*> fields) {
        int down = 0;
        for (bool Master::*field : fields) {
            b.toggle(field, b.at(rows, keys, x + knobWidth, width - knobWidth, keyHeight, down));
            down += keyPitch;
        }
    };
    column(right, {&Master::studioCR, &Master::studioMono, &Master::studioOn});
    b.knob(&Master::studioLevel, b.at(rows, keys, right, knobWidth, knobPitch, keyPitch / 2));
    column(second, {&Master::talkbackAux1_4, &Master::talkbackSlate, &Master::talkbackTB});
    b.knob(&Master::talkbackMicLevel, b.at(rows, keys, second, knobWidth, knobPitch, keyPitch / 2));
}

void addOscillatorAndMeter(Builder& b, const std::shared_ptr<Rows>& rows) {
    constexpr int width = rightWidth / 2 - 4;
    constexpr int second = right + rightWidth - width;
    rows->add(3, 0.5);
    const int titles = rows->add(sectionTitlePitch, titleWeight);
    b.title(b.at(rows, titles, right, width, sectionTitleHeight), "METER SELECT", SectionTints::master);
    b.title(b.at(rows, titles, second, width, sectionTitleHeight), "OSCILLATOR", SectionTints::master);
    const int keys = rows->add(selectorHeight, knobWeight);
    int down = 0;
    for (bool Master::*field : {&Master::meterStudio, &Master::meterCR, &Master::meterStereo}) {
        b.toggle(field, b.at(rows, keys, right, width, keyHeight, down));
        down += keyPitch;
    }
    b.knob(&Master::oscFrequencyPosition, b.at(rows, keys, second, 96, selectorHeight));
    b.toggle(&Master::oscTone, b.at(rows, keys, second + 96, width - 96, keyHeight, keyPitch));
}

ControlTable<MasterSubject> makeTable() {
    Builder b;
    const auto leftRows = std::make_shared<Rows>();
    const auto rightRows = std::make_shared<Rows>();
    addReturns(b, leftRows);
    addAuxMasters(b, leftRows);
    addControlRoom(b, rightRows);
    addStudioAndTalkback(b, rightRows);
    addOscillatorAndMeter(b, rightRows);
    b.table.kind.paintFace = [titles = b.titles](Canvas& canvas, QSize panel) {
        const QRect whole = canvas.px(QRectF(QPointF(), panel));
        Parts::modulePanel(canvas.painter, whole, canvas.scale, canvas.look.palette.masterPanelBackground, canvas.look);
        const int seam = canvas.px((left + leftWidth + right) / 2);
        canvas.painter.fillRect(QRect(seam, 0, canvas.line(), whole.height()), withAlpha(Qt::black, 0.45));
        canvas.painter.fillRect(QRect(seam + canvas.line(), 0, canvas.line(), whole.height()),
                                withAlpha(Qt::white, canvas.look.isDark() ? 0.07 : 0.35));
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

const ControlTable<MasterSubject>& masterPanelTable() {
    static const ControlTable<MasterSubject> table = makeTable();
    return table;
}

} // namespace tessik
