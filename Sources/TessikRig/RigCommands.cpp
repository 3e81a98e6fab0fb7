#include "TessikRig/RigCommands.h"

#include <QRegularExpression>

#include <algorithm>

namespace tessik {

namespace {

const QString ok = QStringLiteral("ok");

QString error(const QString& what) { return QStringLiteral("error: ") + what; }

std::optional<int> number(const QString& text, int low, int high) {
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    return isNumber && value >= low && value <= high ? std::optional(value) : std::nullopt;
}

bool ChannelSwitches::*switchNamed(const QString& name) {
    if (name == QLatin1String("mute")) return &ChannelSwitches::chanMuted;
    if (name == QLatin1String("eq")) return &ChannelSwitches::eqOn;
    if (name == QLatin1String("aux")) return &ChannelSwitches::auxMuted;
    if (name == QLatin1String("mon")) return &ChannelSwitches::monMuted;
    return nullptr;
}

} // namespace

QString RigCommands::obey(const QString& line) {
    const QStringList words = line.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty()) return {};
    if (const auto answer = obeyRecorder(words)) return *answer;
    if (const auto answer = obeyDesk(words)) return *answer;
    return error(QStringLiteral("no command %1").arg(line.simplified()));
}

std::optional<ChannelKind> RigCommands::channel(const QString& name) const {
    const std::vector<ChannelKind> kinds = _desk.channels();
    const auto found = std::find_if(kinds.begin(), kinds.end(), [&](const ChannelKind& kind) {
        return name.compare(kind.id(), Qt::CaseInsensitive) == 0 ||
               name.compare(kind.displayName(), Qt::CaseInsensitive) == 0;
    });
    return found == kinds.end() ? std::nullopt : std::optional(*found);
}

std::optional<QString> RigCommands::obeyRecorder(const QStringList& words) {
    const QString& command = words[0];
    const auto is = [&](const char* name) { return words.size() == 1 && command == QLatin1String(name); };
    if (is("play"))
        _recorder.play();
    else if (is("stop"))
        _recorder.stop();
    else if (is("pause"))
        _recorder.pause();
    else if (is("rewind"))
        _recorder.rewind();
    else if (is("forward"))
        _recorder.fastForward();
    else if (is("record"))
        _recorder.recordStrobe();
    else if (is("where"))
        return _recorder.label(UptimeClock::system().now()).displayString();
    else if (command == QLatin1String("locate")) {
        static const QRegularExpression form(QStringLiteral("^(\\d{1,2}):(\\d{1,2}):(\\d{1,2}):(\\d{1,2})$"));
        const auto match = form.match(words.value(1));
        if (!match.hasMatch() || words.size() != 2) return error(QStringLiteral("locate wants HH:MM:SS:FF"));
        TimecodePosition position = _recorder.label(UptimeClock::system().now());
        position.hours = match.captured(1).toInt();
        position.minutes = match.captured(2).toInt();
        position.seconds = match.captured(3).toInt();
        position.frames = match.captured(4).toInt();
        _recorder.locate(position);
    } else {
        return std::nullopt;
    }
    return ok;
}

std::optional<QString> RigCommands::obeyDesk(const QStringList& words) {
    const QString& command = words[0];
    if (command == QLatin1String("scene") || command == QLatin1String("store")) {
        const auto scene = number(words.value(1), 1, SimulatedConsole::sceneCount);
        if (!scene) return error(QStringLiteral("scenes are 1 to %1").arg(SimulatedConsole::sceneCount));
        if (command == QLatin1String("scene"))
            _desk.recallScene(*scene - 1);
        else
            _desk.storeScene(*scene - 1);
        return ok;
    }
    const auto member = switchNamed(command);
    const bool isFader = command == QLatin1String("fader");
    if (!member && !isFader && command != QLatin1String("show")) return std::nullopt;
    const auto kind = channel(words.value(1));
    if (!kind) return error(QStringLiteral("no channel %1").arg(words.value(1)));
    if (isFader) {
        const auto value = number(words.value(2), 0, 127);
        if (!value) return error(QStringLiteral("a fader stands at 0 to 127"));
        _desk.moveFader(*kind, *value);
        return ok;
    }
    ChannelSwitches switches = _desk.switches(*kind);
    if (member) {
        const bool on = words.value(2) == QLatin1String("on");
        if (!on && words.value(2) != QLatin1String("off")) return error(QStringLiteral("a switch is on or off"));
        switches.*member = on;
        _desk.setSwitches(*kind, switches);
        return ok;
    }
    const auto state = [](bool on) { return on ? QStringLiteral("on") : QStringLiteral("off"); };
    return QStringLiteral("fader %1 vca %2 mute %3 eq %4 aux %5 mon %6")
        .arg(_desk.physicalFader(*kind))
        .arg(_desk.vca(*kind))
        .arg(state(switches.chanMuted), state(switches.eqOn), state(switches.auxMuted), state(switches.monMuted));
}

} // namespace tessik
