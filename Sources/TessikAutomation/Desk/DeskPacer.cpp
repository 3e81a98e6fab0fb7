#include "TessikAutomation/Desk/DeskPacer.h"

#include <algorithm>
#include <utility>

namespace tessik {

using namespace std::chrono_literals;

namespace {
// Three bytes at 31,250 baud.
constexpr Uptime messageTime = 960us;
// What arrives until this long after a message of ours has landed may have left the desk before it: the return cable,
// and the desk's and interface's own delays.
constexpr Uptime crossingMargin = 4ms;
// By then a hand in motion has been heard again, and an echo has arrived.
constexpr Uptime quiet = EchoWatch::latest;
// If a hand moves on after its value was sent back, at whatever pace, it is not followed: that would drag it all the
// way.
constexpr Uptime rest = 250ms;
} // namespace

void DeskPacer::setMessagesPerSecond(int rate) { _perSecond = std::max(rate, 1); }

void DeskPacer::ask(int cc, int value, Urgency urgency) {
    Controller& controller = _controllers[std::size_t(cc)];
    controller.asked = value;
    controller.heard.reset();
    controller.isResend = false;
    if (!_present) return;
    if (controller.waiting) {
        if (*controller.waiting != value) ++_overtaken;
        if (urgency != Urgency::playback) std::erase(_order, cc);
    } else if (urgency == Urgency::playback && controller.believed == value) {
        return;
    }
    if (urgency == Urgency::correction)
        _order.push_front(cc);
    else if (urgency == Urgency::assertion || !controller.waiting)
        _order.push_back(cc);
    controller.waiting = value;
}

bool DeskPacer::noteReceived(Uptime stamp, int cc, int value) {
    if (cc >= MIDIChannelMapping::controllerCount) return true;
    const bool isEcho = _echoes.take(stamp, cc, value);
    if (isEcho && _echoes.isLoop()) return false;
    Controller& controller = _controllers[std::size_t(cc)];
    controller.believed = value;
    controller.heard.reset();
    if (!isEcho) {
        controller.asked.reset();
        if (controller.waiting) {
            controller.waiting.reset();
            std::erase(_order, cc);
        }
    }
    const bool mayHaveCrossed = isEcho || stamp < controller.landsAt + crossingMargin;
    if (!mayHaveCrossed || (!controller.waiting && value == controller.sent)) return true;
    controller.believed.reset();
    if (!_present) { // there is no telling, or mending, which of the two the desk holds
        controller.asked = value;
        return true;
    }
    controller.heard = value;
    controller.heardAt = stamp;
    if (std::find(_doubtful.begin(), _doubtful.end(), cc) == _doubtful.end()) _doubtful.push_back(cc);
    return true;
}

/// Sends back what was heard unless a later message, to or from the desk, has settled which value it holds.
void DeskPacer::settle(Uptime now) {
    std::erase_if(_doubtful, [&](int cc) {
        Controller& controller = _controllers[std::size_t(cc)];
        if (!controller.heard) return true;
        if (controller.waiting || now < controller.landsAt + quiet ||
            now < controller.heardAt + (controller.isResend ? rest : quiet))
            return false;
        const int value = *controller.heard;
        const bool isMended = value == controller.sent; // by what waited at the time
        if (!isMended) ask(cc, value, Urgency::assertion);
        controller.heard.reset();
        controller.isResend = !isMended;
        return true;
    });
}

void DeskPacer::forget() {
    _controllers = {};
    _order.clear();
    _doubtful.clear();
    _echoes = {};
    _present = false;
}

void DeskPacer::lose() {
    for (Controller& controller : _controllers) {
        if (controller.heard) controller.asked = std::exchange(controller.heard, std::nullopt);
        controller.waiting.reset();
        controller.believed.reset();
    }
    _order.clear();
    _doubtful.clear();
    _present = false;
}

void DeskPacer::regain() {
    _present = true;
    for (const int cc : safeOrder([this](int controller) { return _controllers[std::size_t(controller)].asked; }))
        ask(cc, *_controllers[std::size_t(cc)].asked, Urgency::assertion);
}

std::vector<int> DeskPacer::safeOrder(const std::function<std::optional<int>(int)>& valueOf) {
    std::vector<int> mutes, faders, others;
    for (int cc = 0; cc < MIDIChannelMapping::controllerCount; ++cc) {
        const std::optional<int> value = valueOf(cc);
        if (!value) continue;
        if (!MIDIChannelMapping::channelKindForSwitchCC(cc))
            faders.push_back(cc);
        else if (MIDIChannelMapping::decodeSwitchByte(std::uint8_t(*value)).chanMuted)
            mutes.push_back(cc);
        else
            others.push_back(cc);
    }
    mutes.insert(mutes.end(), faders.begin(), faders.end());
    mutes.insert(mutes.end(), others.begin(), others.end());
    return mutes;
}

std::optional<DeskPacer::Message> DeskPacer::next(Uptime now) {
    _tokens = std::min(double(maxBurst), _tokens + std::chrono::duration<double>(now - _tokensAt).count() * _perSecond);
    _tokensAt = now;
    _echoes.giveUp(now);
    settle(now);
    if (_order.empty() || _tokens < 1) return std::nullopt;
    return Message{_order.front(), *_controllers[std::size_t(_order.front())].waiting};
}

void DeskPacer::noteSent(Uptime now, Message message) {
    Controller& controller = _controllers[std::size_t(message.cc)];
    controller.waiting.reset();
    controller.believed = controller.sent = message.value;
    _cableFreeAt = std::max(_cableFreeAt, now) + messageTime;
    controller.landsAt = _cableFreeAt;
    _echoes.noteSent(now, message.cc, message.value, _cableFreeAt);
    std::erase(_order, message.cc);
    _tokens -= 1;
}

} // namespace tessik
