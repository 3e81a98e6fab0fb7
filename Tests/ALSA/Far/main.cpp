// The far end of a MIDI cable, in a process of its own: a client of the sequencer with one port, written on the
// library alone, that does what the lines of its standard input say and answers each with "ok" or "error REASON".
#include <alsa/asoundlib.h>

#include <cstdio>
#include <iostream>
#include <poll.h>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr unsigned duplex =
    SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ | SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;

class FarEnd {
public:
    FarEnd(const char* client, const char* port) {
        check(snd_seq_open(&_seq, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK));
        check(snd_seq_set_client_name(_seq, client));
        open(port, duplex);
    }

    int clientNumber() const { return snd_seq_client_id(_seq); }

    void run(const std::string& line) {
        std::istringstream words(line);
        std::string what;
        words >> what;
        if (what == "open") return openFrom(words);
        if (what == "close") return check(snd_seq_delete_simple_port(_seq, _port));
        if (what == "cable") return cable(words);
        if (what == "hold") return hold(words, snd_seq_subscribe_port);
        if (what == "release") return hold(words, snd_seq_unsubscribe_port);
        if (what == "cut") return cut(words);
        if (what == "cc") return controlChanges(words, true);
        if (what == "flood") return controlChanges(words, false);
        if (what == "stream") return stream();
        if (what == "sysex") return sysEx(words);
        if (what == "drain") return drain();
        check(-EINVAL);
    }

private:
    static void check(int result) {
        if (result < 0) throw result;
    }

    void open(const char* name, unsigned capability) {
        _port = snd_seq_create_simple_port(_seq, name, capability, SND_SEQ_PORT_TYPE_MIDI_GENERIC);
        check(_port);
    }

    /// open source|destination|duplex|hidden NAME
    void openFrom(std::istringstream& words) {
        std::string kind, name;
        words >> kind >> std::ws;
        std::getline(words, name);
        open(name.c_str(), kind == "source"        ? SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ
                           : kind == "destination" ? SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE
                           : kind == "hidden"      ? duplex | SND_SEQ_PORT_CAP_NO_EXPORT
                                                   : duplex);
    }

    /// cable NAME: from the port to that client's first.
    void cable(std::istringstream& words) {
        std::string name;
        words >> name;
        snd_seq_addr_t there{};
        check(snd_seq_parse_address(_seq, &there, name.c_str()));
        check(snd_seq_connect_to(_seq, _port, there.client, there.port));
    }

    using Link = int (*)(snd_seq_t*, snd_seq_port_subscribe_t*);
    void link(Link operation, const snd_seq_addr_t& from, const snd_seq_addr_t& to, bool isExclusive) {
        snd_seq_port_subscribe_t* subscription = nullptr;
        snd_seq_port_subscribe_alloca(&subscription);
        snd_seq_port_subscribe_set_sender(subscription, &from);
        snd_seq_port_subscribe_set_dest(subscription, &to);
        snd_seq_port_subscribe_set_exclusive(subscription, isExclusive);
        check(operation(_seq, subscription));
    }

    snd_seq_addr_t firstPort(std::istringstream& words) {
        std::string name;
        words >> std::ws;
        std::getline(words, name);
        snd_seq_addr_t there{};
        check(snd_seq_parse_address(_seq, &there, name.c_str()));
        return there;
    }

    /// hold NAME, release NAME: that client's first port, both ways, for nobody else.
    void hold(std::istringstream& words, Link operation) {
        const snd_seq_addr_t there = firstPort(words);
        const snd_seq_addr_t here{static_cast<unsigned char>(clientNumber()), static_cast<unsigned char>(_port)};
        link(operation, there, here, true);
        link(operation, here, there, true);
    }

    /// cut NAME: whatever anybody connected to or from that client's first port.
    void cut(std::istringstream& words) {
        const snd_seq_addr_t there = firstPort(words);
        snd_seq_query_subscribe_t* query = nullptr;
        snd_seq_query_subscribe_alloca(&query);
        for (const snd_seq_query_subs_type_t type : {SND_SEQ_QUERY_SUBS_READ, SND_SEQ_QUERY_SUBS_WRITE}) {
            snd_seq_query_subscribe_set_root(query, &there);
            snd_seq_query_subscribe_set_type(query, type);
            snd_seq_query_subscribe_set_index(query, 0);
            while (snd_seq_query_port_subscribers(_seq, query) >= 0) {
                const snd_seq_addr_t other = *snd_seq_query_subscribe_get_addr(query);
                const bool isReader = type == SND_SEQ_QUERY_SUBS_READ;
                link(snd_seq_unsubscribe_port, isReader ? there : other, isReader ? other : there, false);
            }
        }
    }

    int output(snd_seq_event_t& event) {
        snd_seq_ev_set_source(&event, static_cast<unsigned char>(_port));
        snd_seq_ev_set_subs(&event);
        snd_seq_ev_set_direct(&event);
        return snd_seq_event_output_direct(_seq, &event);
    }

    int controlChange(int number) {
        snd_seq_event_t event{};
        snd_seq_ev_set_controller(&event, 0, unsigned(number >> 7 & 0x7F), number & 0x7F);
        return output(event);
    }

    /// cc|flood FIRST COUNT: Control Changes that count in 14 bits; a flood takes no notice of losses.
    void controlChanges(std::istringstream& words, bool mustArrive) {
        int first = 0, count = 0;
        words >> first >> count;
        for (int number = first; number < first + count; ++number)
            if (const int result = controlChange(number); mustArrive) check(result);
    }

    /// Floods until the next line comes.
    void stream() {
        pollfd input{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        for (int number = 0; poll(&input, 1, 0) == 0; ++number)
            controlChange(number);
    }

    /// sysex LENGTH PIECE WITH_QUARTER_FRAMES: of that many data bytes, 0, 1, 2 …, in events of PIECE bytes with a
    /// quarter frame between each two.
    void sysEx(std::istringstream& words) {
        std::size_t length = 0, piece = 0;
        int quarterFrames = 0;
        words >> length >> piece >> quarterFrames;
        std::vector<unsigned char> message{0xF0};
        for (std::size_t i = 0; i < length; ++i)
            message.push_back(static_cast<unsigned char>(i & 0x7F));
        message.push_back(0xF7);
        for (std::size_t at = 0, quarter = 0; at < message.size(); at += piece, ++quarter) {
            snd_seq_event_t event{};
            snd_seq_ev_set_sysex(&event, unsigned(std::min(piece, message.size() - at)), message.data() + at);
            check(output(event));
            if (!quarterFrames) continue;
            event = {};
            event.type = SND_SEQ_EVENT_QFRAME;
            event.data.control.value = int(quarter & 7) << 4;
            check(output(event));
        }
    }

    /// Reads what has come in, and tells how many Control Changes that were.
    void drain() {
        int count = 0;
        for (snd_seq_event_t* event = nullptr;;) {
            const int result = snd_seq_event_input(_seq, &event);
            if (result == -EAGAIN) break;
            if (result == -ENOSPC) continue;
            check(result);
            count += event->type == SND_SEQ_EVENT_CONTROLLER;
        }
        std::cout << count << ' ';
    }

    snd_seq_t* _seq = nullptr;
    int _port = -1;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    try {
        FarEnd far(argv[1], argv[2]);
        std::cout << far.clientNumber() << std::endl;
        for (std::string line; std::getline(std::cin, line);)
            try {
                far.run(line);
                std::cout << "ok" << std::endl;
            } catch (int error) {
                std::cout << "error " << snd_strerror(error) << std::endl;
            }
    } catch (int error) {
        std::cout << "error " << snd_strerror(error) << std::endl;
        return 1;
    }
}
