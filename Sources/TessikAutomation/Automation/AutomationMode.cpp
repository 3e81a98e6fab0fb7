#include "TessikAutomation/Automation/AutomationMode.h"

namespace tessik {

QString rawValue(AutomationMode mode) {
    switch (mode) {
    case AutomationMode::off: return QStringLiteral("off");
    case AutomationMode::write: return QStringLiteral("write");
    case AutomationMode::update: return QStringLiteral("update");
    case AutomationMode::read: break;
    }
    return QStringLiteral("read");
}

} // namespace tessik
