#pragma once

#include "TessikAutomation/ManualSettings/Travel.h"
#include "TessikAutomation/Persistence/RecordFields.h"
#include "TessikAutomation/Views/Theme/Look.h"

#include <variant>

namespace tessik {

/// What the console prints at a control that is only recorded, and how its knob or switch behaves.
template <typename Record>
struct RecordControl {
    std::variant<bool Record::*, double Record::*> field;
    QString id;       ///< the field's key in files
    QString title;    ///< as printed
    QString fullName; ///< as spoken: "HI MID gain"
    QColor tint;      ///< of the knob's cap
    QColor Tints::*lamp = &Tints::ledAmber;
    Travel travel = {}; ///< of a knob

    bool isSwitch() const { return field.index() == 0; }
};

/// The key in files of a record's field.
template <typename Record, typename Value>
QString fieldKey(Value Record::*member) {
    QString key;
    std::apply(
        [&](const auto&... field) {
            const auto look = [&](const auto& one) {
                if constexpr (std::is_same_v<decltype(one.member), Value Record::*>)
                    if (one.member == member) key = QLatin1String(one.key.data(), qsizetype(one.key.size()));
            };
            (look(field), ...);
        },
        recordFields<Record>);
    return key;
}

/// Builds a list of controls in panel order; each default is the record's.
template <typename Record>
struct RecordControls {
    std::vector<RecordControl<Record>> list;

    void addSwitch(bool Record::*field, const char* title, const char* fullName, QColor Tints::*lamp) {
        list.push_back({field, fieldKey(field), QString::fromUtf8(title), QString::fromUtf8(fullName), {}, lamp});
    }
    void addKnob(double Record::*field, const char* title, const char* fullName, const QColor& tint, Travel travel) {
        travel.defaultValue = Record().*field;
        list.push_back({field, fieldKey(field), QString::fromUtf8(title), QString::fromUtf8(fullName), tint,
                        &Tints::ledAmber, std::move(travel)});
    }
    const RecordControl<Record>& of(const std::variant<bool Record::*, double Record::*>& field) const {
        return *std::find_if(list.begin(), list.end(), [&](const auto& control) { return control.field == field; });
    }
};

namespace Travels {
Travel gain();                          ///< an equaliser's ±15 dB, with a detent at 0
Travel trim(double min, double max);    ///< decibels
Travel sweep(double min, double max);   ///< hertz
Travel level();                         ///< 0 to 10
Travel pan();                           ///< -1 to 1, with a detent in the middle
Travel selector(QStringList positions); ///< one value per position, from 0
} // namespace Travels

} // namespace tessik
