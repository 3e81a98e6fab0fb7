#include "TessikKit/MIDI/ALSA/SequencerClient.h"

#include "TessikKit/MIDI/ALSA/EventEncoder.h"
#include "TessikKit/MIDI/Log.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tessik {

namespace {

/// Events that may wait to be read: the most that the kernel allows.
constexpr std::size_t inputPoolEvents = 2000;
/// As much as that pool can hold. Reading an event longer than this buffer never succeeds.
constexpr std::size_t inputBufferBytes = 64 * 1024;

QString errorText(int status) { return QString::fromLocal8Bit(std::strerror(-status)); }

[[gnu::format(printf, 5, 6)]] void logLibraryMessage(const char*, int, const char* function, int error,
                                                     const char* format, ...) {
    std::array<char, 512> text{};
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    const QString message = QStringLiteral("%1: %2").arg(QString::fromUtf8(function), QString::fromUtf8(text.data()));
    logLine(QStringLiteral("ALSA"), error ? message + QStringLiteral(": ") + errorText(-error) : message);
}

/// The socket is in the card's long name, such as "UM-ONE at usb-0000:00:14.0-2, full speed".
DeviceIdentity deviceOf(int card) {
    DeviceIdentity device;
    char* longName = nullptr;
    if (snd_card_get_longname(card, &longName) >= 0) {
        device.socket =
            QString::fromUtf8(longName).section(QLatin1String(" at "), 1, 1).section(QLatin1Char(','), 0, 0);
        std::free(longName);
    }
    QFile serial(QStringLiteral("/sys/class/sound/card%1/device/../serial").arg(card));
    if (serial.open(QIODevice::ReadOnly)) device.serial = QString::fromUtf8(serial.readAll()).trimmed();
    return device;
}

} // namespace

std::unique_ptr<SequencerClient> SequencerClient::open(const QString& name, MIDIStatus& status) {
    snd_lib_error_set_handler(logLibraryMessage);
    snd_seq_t* sequencer = nullptr;
    status = snd_seq_open(&sequencer, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK);
    if (status < 0) return nullptr;
    status = 0;
    return std::unique_ptr<SequencerClient>(new SequencerClient(sequencer, name));
}

SequencerClient::SequencerClient(snd_seq_t* sequencer, const QString& name)
    : _sequencer(sequencer), _name(name), _number(std::uint8_t(snd_seq_client_id(sequencer))) {
    snd_seq_set_client_name(_sequencer, name.toUtf8().constData());
    snd_seq_set_input_buffer_size(_sequencer, inputBufferBytes);
    snd_seq_set_client_pool_input(_sequencer, inputPoolEvents);
    snd_seq_client_pool_t* pool = nullptr;
    snd_seq_client_pool_alloca(&pool);
    snd_seq_get_client_pool(_sequencer, pool);
    if (const std::size_t granted = snd_seq_client_pool_get_input_pool(pool); granted < inputPoolEvents)
        logLine(_name, QStringLiteral("room for %1 of %2 incoming events").arg(granted).arg(inputPoolEvents));
}

SequencerClient::~SequencerClient() {
    stop();
    snd_seq_close(_sequencer);
}

MIDIStatus SequencerClient::start(SequencerListener& listener, std::chrono::milliseconds settle) {
    _stopSignal = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (_stopSignal < 0) return -errno;
    _thread = std::thread([this, &listener, settle] { run(listener, settle); });
    return 0;
}

void SequencerClient::stop() {
    if (!_thread.joinable()) return;
    eventfd_write(_stopSignal, 1);
    _thread.join();
    close(_stopSignal);
}

int SequencerClient::createPort(const QString& name, unsigned capability) {
    return snd_seq_create_simple_port(_sequencer, name.toUtf8().constData(), capability,
                                      SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_SOFTWARE |
                                          SND_SEQ_PORT_TYPE_APPLICATION);
}

MIDIStatus SequencerClient::link(int (*operation)(snd_seq_t*, snd_seq_port_subscribe_t*), SequencerAddress sender,
                                 SequencerAddress receiver) {
    snd_seq_port_subscribe_t* subscription = nullptr;
    snd_seq_port_subscribe_alloca(&subscription);
    const snd_seq_addr_t from{sender.client, sender.port};
    const snd_seq_addr_t to{receiver.client, receiver.port};
    snd_seq_port_subscribe_set_sender(subscription, &from);
    snd_seq_port_subscribe_set_dest(subscription, &to);
    return std::min(operation(_sequencer, subscription), 0);
}

MIDIStatus SequencerClient::send(std::uint8_t fromPort, std::optional<SequencerAddress> receiver,
                                 std::span<const std::uint32_t> words) {
    const std::lock_guard lock(_sending);
    const MIDIStatus status = encodeEvents(words, [&](snd_seq_event_t& event) {
        snd_seq_ev_set_source(&event, fromPort);
        if (receiver)
            snd_seq_ev_set_dest(&event, receiver->client, receiver->port);
        else
            snd_seq_ev_set_subs(&event);
        snd_seq_ev_set_direct(&event);
        return snd_seq_event_output_direct(_sequencer, &event);
    });
    // Hardware whose buffer is full answers with "no memory", programs with "try again".
    return status == -EAGAIN || status == -ENOMEM ? midiWouldBlock : status;
}

std::vector<SequencerPort> SequencerClient::ports() const {
    snd_seq_client_info_t* client = nullptr;
    snd_seq_port_info_t* port = nullptr;
    snd_seq_client_info_alloca(&client);
    snd_seq_port_info_alloca(&port);
    std::vector<SequencerPort> ports;
    std::map<int, DeviceIdentity> devices; // by card
    for (int card = -1; snd_card_next(&card) >= 0 && card >= 0;)
        devices[card] = deviceOf(card);
    snd_seq_client_info_set_client(client, -1);
    while (snd_seq_query_next_client(_sequencer, client) >= 0) {
        const int number = snd_seq_client_info_get_client(client);
        const auto device = devices.find(snd_seq_client_info_get_card(client));
        snd_seq_port_info_set_client(port, number);
        snd_seq_port_info_set_port(port, -1);
        while (snd_seq_query_next_port(_sequencer, port) >= 0)
            ports.push_back({.address = {std::uint8_t(number), std::uint8_t(snd_seq_port_info_get_port(port))},
                             .clientName = QString::fromUtf8(snd_seq_client_info_get_name(client)),
                             .portName = QString::fromUtf8(snd_seq_port_info_get_name(port)),
                             .capability = snd_seq_port_info_get_capability(port),
                             .processID = snd_seq_client_info_get_pid(client),
                             .device = device == devices.end() ? DeviceIdentity() : device->second});
    }
    return ports;
}

void SequencerClient::run(SequencerListener& listener, std::chrono::milliseconds settle) {
    std::array<pollfd, 2> waited{};
    waited[0] = {.fd = _stopSignal, .events = POLLIN, .revents = 0};
    snd_seq_poll_descriptors(_sequencer, &waited[1], 1, POLLIN);
    MIDIStatus status = 0;
    while (status == 0) {
        if (poll(waited.data(), waited.size(), -1) < 0) {
            if (errno != EINTR) status = -errno;
            continue;
        }
        if (!waited[0].revents && settle.count() > 0) poll(waited.data(), 1, int(settle.count()));
        if (waited[0].revents) return;
        status = read(listener);
    }
    logLine(_name, QStringLiteral("the sequencer no longer delivers: %1").arg(errorText(status)));
}

MIDIStatus SequencerClient::read(SequencerListener& listener) {
    const Uptime stamp = UptimeClock::system().now();
    do {
        snd_seq_event_t* event = nullptr;
        const int result = snd_seq_event_input(_sequencer, &event);
        if (result == -EAGAIN || result == -EINTR) break;
        if (result == -ENOSPC)
            listener.receiveOverrun();
        else if (result < 0)
            return result;
        else if (event)
            listener.receive(*event, stamp);
    } while (snd_seq_event_input_pending(_sequencer, 0) > 0);
    listener.endBatch();
    return 0;
}

} // namespace tessik
