#include "TessikAutomation/MIDI/DeskPacer.h"

#include <algorithm>

namespace tessik {

using namespace std::chrono_literals;

namespace {
// Three bytes at 31,250 baud.
constexpr Uptime messageTime = 960us;
// What arrives until so long after a message of ours has landed may have left the desk before: the cable back, the
// desk's and the interface's own delays.
constexpr Uptime crossingMargin = 4ms;
} // namespace

void DeskPacer::setMessagesPerSecond(int rate) { _perSecond = std::max(rate, 1); }

void DeskPacer::ask(int cc, int value, Urgency urgency) {
    Controller& controller = _controllers[std::size_t(cc)];
    controller.asked = value;
    if (!_present) return;
    if (controller.waiting) {
        if (*controller.waiting != value) ++_overtaken;
        controller.waiting = value;
        if (urgency == Urgency::correction) {
            std::erase(_order, cc);
            _order.push_front(cc);
        }
        return;
    }
    if (urgency == Urgency::playback && controller.believed == value) return;
    controller.waiting = value;
    if (urgency == Urgency::correction)
        _order.push_front(cc);
    else
        _order.push_back(cc);
}

void DeskPacer::noteReceived(Uptime stamp, int cc, int value) {
    if (cc >= MIDIChannelMapping::controllerCount) return;
    Controller& controller = _controllers[std::size_t(cc)];
    controller.believed = value;
    controller.asked.reset();
    if (controller.waiting) {
        controller.waiting.reset();
        std::erase(_order, cc);
    }
    if (stamp >= controller.landsAt + crossingMargin) return;
    ask(cc, value, Urgency::assertion);
    if (!_present) controller.believed.reset(); // which of the two the desk ended on cannot be told, nor mended now
}

void DeskPacer::forget() {
    _controllers = {};
    _order.clear();
    _present = false;
}

void DeskPacer::lose() {
    for (Controller& controller : _controllers) {
        controller.waiting.reset();
        controller.believed.reset();
    }
    _order.clear();
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
    if (_order.empty() || _tokens < 1) return std::nullopt;
    return Message{_order.front(), *_controllers[std::size_t(_order.front())].waiting};
}

void DeskPacer::noteSent(Uptime now, Message message) {
    Controller& controller = _controllers[std::size_t(message.cc)];
    controller.waiting.reset();
    controller.believed = message.value;
    _cableFreeAt = std::max(_cableFreeAt, now) + messageTime;
    controller.landsAt = _cableFreeAt;
    std::erase(_order, message.cc);
    _tokens -= 1;
}

} // namespace tessik
