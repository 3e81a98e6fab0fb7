#include "TessikKit/Models/ChannelKind.h"

namespace tessik {

QString ChannelKind::id() const {
    switch (_case) {
    case Case::input: return QStringLiteral("input-%1").arg(_number);
    case Case::group: return QStringLiteral("group-%1").arg(_number);
    case Case::stereo: break;
    }
    return QStringLiteral("stereo");
}

QString ChannelKind::displayName() const {
    switch (_case) {
    case Case::input: return QString::number(_number);
    case Case::group: return QStringLiteral("G%1").arg(_number);
    case Case::stereo: break;
    }
    return QStringLiteral("ST");
}

} // namespace tessik
