#include "TessikAutomation/Desk/DeskLink.h"

namespace tessik {

DeskLink::DeskLink(MIDIService& service, const QString& inputClientName, const UptimeClock& clock)
    : model(clock), output(service, clock), input(service, model, inputClientName), editor(model, output) {
    input.isNews = [this](Uptime stamp, int cc, int value) { return output.noteReceived(stamp, cc, value); };
    input.connection.setDataLostHandler([this] { output.assertAgain(); });
}

} // namespace tessik
