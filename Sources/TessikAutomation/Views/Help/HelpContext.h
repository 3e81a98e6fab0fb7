#pragma once

#include <QString>

#include <cstdint>

class QWidget;

namespace tessik {

/// The parts of the program that have a chapter of their own.
enum class HelpContext : std::uint8_t {
    mainWindow,
    welcome,
    settings,
    snapshots,
    passes,
    channelStrip,
    scribbleStrip,
    masterSection,
    transport,
    recording,
    playback,
    nulling,
    unsyncedChannels,
    zeroConsole,
    rig,
    problems,
};

QString chapterTitle(HelpContext context);

/// Says which chapter explains `part` and all that stands in it.
void setHelpContext(QWidget& part, HelpContext context);
bool hasHelpContext(const QWidget* where);
/// The chapter for the widget where the user is: that of the nearest part around it, else "The Main Window".
QString chapterTitle(const QWidget* where);

} // namespace tessik
