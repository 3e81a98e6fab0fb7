#include "TessikAutomation/Views/Desk/RecordControl.h"

namespace tessik::Travels {

Travel gain() {
    return {.min = -15, .max = 15, .format = &ValueFormat::decibels, .hasCenterDetent = true, .steps = 60};
}

Travel trim(double min, double max) {
    return {.min = min, .max = max, .format = &ValueFormat::decibels, .steps = int(max - min)};
}

Travel sweep(double min, double max) {
    return {.min = min, .max = max, .format = &ValueFormat::frequency, .logarithmic = true, .steps = 60};
}

Travel level() { return {.min = 0, .max = 10, .format = &ValueFormat::level, .steps = 50}; }

Travel pan() { return {.min = -1, .max = 1, .format = &ValueFormat::pan, .hasCenterDetent = true, .steps = 40}; }

Travel selector(QStringList positions) {
    const int last = int(positions.size()) - 1;
    return {.min = 0, .max = double(last), .steps = last, .positions = std::move(positions)};
}

} // namespace tessik::Travels
