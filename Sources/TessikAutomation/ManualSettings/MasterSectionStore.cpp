#include "TessikAutomation/ManualSettings/MasterSectionStore.h"

#include <cmath>

namespace tessik {
namespace {

template <SavedRecord Record>
bool hasOnlyNumbers(const Record& record) {
    const auto isNumber = []<typename Value>(const Value& value) {
        if constexpr (std::is_same_v<Value, double>)
            return std::isfinite(value);
        else if constexpr (std::is_same_v<Value, bool>)
            return true;
        else
            return std::all_of(value.begin(), value.end(), [](const auto& inner) { return hasOnlyNumbers(inner); });
    };
    return std::apply([&](const auto&... field) { return (isNumber(record.*field.member) && ...); },
                      recordFields<Record>);
}

} // namespace

void MasterSectionStore::setSettings(const MasterSectionSettings& changed) {
    if (changed == settings.value() || !hasOnlyNumbers(changed)) return;
    settings = changed;
    if (onChange) onChange();
}

} // namespace tessik
