#pragma once

#include "TessikAutomation/Views/Application.h"
#include "TessikAutomation/Views/TourGuide.h"

namespace tessik {

/// Drives the program through its whole job on the rig, as its user would, and writes pictures and a report. After
/// every step the rig's desk is compared with what the program believes of it.
class Tour {
public:
    Tour(Application& application, Rig& rig, const QString& folder);

    /// The process's exit status: 0 where every statement held.
    int run();

private:
    void connect();
    void hearScene();
    void handMoves();
    void screenMoves();
    void loseTheCable();
    void settings();
    void appearances();

    /// Waits until nothing travels any more, and compares channel by channel.
    void compareDesk();
    void clickControl(ChannelKind kind, const QString& control);
    void dragFader(ChannelKind kind, int from, int to);

    Application& _app;
    Rig& _rig;
    TourGuide _guide;
};

} // namespace tessik
