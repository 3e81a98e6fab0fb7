#pragma once

#include <QString>

#include <cstdint>

class QWidget;

namespace tessik {

/// The parts of the program that have their own chapter.
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

/// Sets the chapter that explains `part` and everything in it.
void setHelpContext(QWidget& part, HelpContext context);
bool hasHelpContext(const QWidget* where);
/// The chapter for the widget that the user is at: that of the nearest part around it, else "The Main Window".
QString chapterTitle(const QWidget* where);

} // namespace tessik
