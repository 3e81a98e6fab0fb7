#include "TessikAutomation/Views/Transport/TransportIcon.h"

static void initResources() { Q_INIT_RESOURCE(transport); } // the macro does not work inside a namespace

namespace tessik {

Symbol transportIcon(const QString& name) {
    initResources();
    return svgSymbol(QStringLiteral(":/transport/") + name);
}

} // namespace tessik
