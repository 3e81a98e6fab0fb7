#pragma once

#include "TessikAutomation/ManualSettings/ManualChannelSettings.h"
#include "TessikKit/Models/Published.h"

#include <cmath>
#include <functional>

namespace tessik {

/// One channel's manual settings as observable properties, one per field, so that turning one knob redraws only what
/// shows it. A field is named by its member in the record.
class ManualChannelSettingsBox {
public:
    explicit ManualChannelSettingsBox(const ManualChannelSettings& settings = {}) { setSettings(settings); }

    template <typename Value>
    Value value(Value ManualChannelSettings::*member) const {
        return find(*this, member).value();
    }
    template <typename Value>
    const Observable<Value>& field(Value ManualChannelSettings::*member) const {
        return find(*this, member);
    }
    /// A user's edit: writes one field and, if that changes it, calls `onEdit`. Ignores NaN and infinities.
    template <typename Value>
    void edit(Value ManualChannelSettings::*member, Value value) {
        if constexpr (std::is_same_v<Value, double>)
            if (!std::isfinite(value)) return;
        Field<Value>& written = find(*this, member);
        if (written.value() == value) return;
        written = value;
        if (onEdit) onEdit();
    }

    ManualChannelSettings settings() const {
        ManualChannelSettings record;
        forEach(*this, [&record](auto member, const auto& field) { record.*member = field.value(); });
        return record;
    }
    /// Replaces all fields; unchanged ones notify nobody, and `onEdit` is not called.
    void setSettings(const ManualChannelSettings& settings) {
        forEach(*this, [&settings](auto member, auto& field) { field = settings.*member; });
    }

    std::function<void()> onEdit;

private:
    template <typename Value>
    using Field = Published<Value, ManualChannelSettingsBox>;
    template <typename... Values>
    static std::tuple<Field<Values>...> propertiesOf(const std::tuple<RecordField<ManualChannelSettings, Values>...>&);
    using Properties = decltype(propertiesOf(recordFields<ManualChannelSettings>));

    template <typename Box, typename Visit>
    static void forEach(Box& box, Visit visit) {
        [&]<std::size_t... I>(std::index_sequence<I...>) {
            (visit(std::get<I>(recordFields<ManualChannelSettings>).member, std::get<I>(box._properties)), ...);
        }
        (std::make_index_sequence<std::tuple_size_v<Properties>>());
    }

    template <typename Box, typename Value>
    static auto& find(Box& box, Value ManualChannelSettings::*wanted) {
        std::conditional_t<std::is_const_v<Box>, const Field<Value>, Field<Value>>* found = nullptr;
        forEach(box, [&](auto member, auto& field) {
            if constexpr (std::is_same_v<decltype(member), Value ManualChannelSettings::*>)
                if (member == wanted) found = &field;
        });
        return *found;
    }

    Properties _properties;
};

} // namespace tessik
