#include "TessikAutomation/Help/HelpContext.h"

#include <QVariant>
#include <QWidget>

namespace tessik {

namespace {
constexpr char property[] = "tessikHelpChapter";
}

QString chapterTitle(HelpContext context) {
    switch (context) {
    case HelpContext::mainWindow: break;
    case HelpContext::welcome: return QStringLiteral("Overview");
    case HelpContext::settings: return QStringLiteral("Setting Up MIDI");
    case HelpContext::snapshots:
    case HelpContext::passes: return QStringLiteral("Sessions, Snapshots and Passes");
    case HelpContext::channelStrip: return QStringLiteral("Channel Strips");
    case HelpContext::scribbleStrip: return QStringLiteral("Scribble Strips and Channel Names");
    case HelpContext::masterSection: return QStringLiteral("The Master Section");
    case HelpContext::transport: return QStringLiteral("Transport and Timecode");
    case HelpContext::recording: return QStringLiteral("Recording Automation (WRITE and UPDATE)");
    case HelpContext::playback: return QStringLiteral("Playing Back Automation (READ)");
    case HelpContext::nulling: return QStringLiteral("Nulling Faders (NULL)");
    case HelpContext::unsyncedChannels: return QStringLiteral("Getting Your Console State Into the App");
    case HelpContext::zeroConsole: return QStringLiteral("Zeroing the Console");
    case HelpContext::rig: return QStringLiteral("Installing and First Launch");
    case HelpContext::problems: return QStringLiteral("Troubleshooting");
    }
    return QStringLiteral("The Main Window");
}

void setHelpContext(QWidget& part, HelpContext context) { part.setProperty(property, chapterTitle(context)); }

namespace {

QVariant contextAround(const QWidget* where) {
    QVariant chapter;
    for (; where && !chapter.isValid(); where = where->parentWidget())
        chapter = where->property(property);
    return chapter;
}

} // namespace

bool hasHelpContext(const QWidget* where) { return contextAround(where).isValid(); }

QString chapterTitle(const QWidget* where) {
    const QVariant chapter = contextAround(where);
    return chapter.isValid() ? chapter.toString() : chapterTitle(HelpContext::mainWindow);
}

} // namespace tessik
