#pragma once

#include "TessikAutomation/Application/Application.h"
#include "TessikAutomation/Tour/TapeCurves.h"
#include "TessikAutomation/Tour/TourGuide.h"

#include <QDir>

class QAbstractButton;
class QDialog;

namespace tessik {

/// Drives the program through its whole job on the rig, as a user would, and writes pictures and a report. After every
/// step it compares the rig's desk with what the program believes of it.
class Tour {
public:
    /// `recoveryRoot` is the application's.
    Tour(Application& application, Rig& rig, const QString& folder, QString recoveryRoot);

    /// In a child process of the tour: the folder in which to leave a recovery file before dying.
    static constexpr const char* crashVariable = "TESSIK_TOUR_CRASH";

    /// The process's exit status: 0 if every statement held.
    int run();
    /// Fills the session, lets its recovery file be written, and dies as in a crash. The tour runs this in a child
    /// process.
    [[noreturn]] void crash();

private:
    void connect();
    void hearScene();
    void handMoves();
    void screenMoves();
    void writeDown();
    void loseTheCable();
    void rollTape();
    void writeTake();
    void readBack();
    void updateTake();
    /// Hears the waiting take, compares it with the previous pass, discards it and restores it.
    void auditionTake(int automation, int ridden);
    void nullParked();
    void lookAtLanes();
    void exchangeMIDIFile();
    void saveSession();
    void zeroConsole();
    void undoRecall();
    void crashAndRecover();
    void reopenReplaced();
    void settings();
    void appearances();
    void welcome();
    void manual();
    void problems();
    void watchMIDI();
    void keys();
    void longLists();

    void inBothThemes(const std::function<void(const QString& theme)>& show);
    /// Waits until nothing is in transit, and compares channel by channel.
    void compareDesk();
    /// Changes something in every store.
    void fillSession(const QString& name);
    void compareStores(const QString& file, const QString& statement);
    /// Keeps trying on whatever dialog is open until `answer` has handled it.
    void answerDialog(std::function<bool(QDialog&)> answer);
    /// Locates the recorder and waits for its answer.
    void locate(std::int64_t frame);
    /// Plays from `frame` on and stops once the tape is `frames` further. Calls `meanwhile` often, with the frames
    /// elapsed. Returns the longest time for which the program got no chance to run.
    Uptime roll(std::int64_t frame, double frames, const std::function<void(double t)>& meanwhile);
    /// Names the waiting take, in the popover that opened for it.
    void saveTake(const QString& name);
    /// Plays the take and compares what the desk does with what it should do.
    void playAndCompare(const TapeCurves& expected, const QString& statement);
    void compareCurves(const TapeCurves& played, const TapeCurves& expected, const QString& statement);
    /// Answers the next file dialog with that path.
    void answerFileDialog(const QString& path);
    /// Chooses from the context menu of the topmost pass in the list.
    void chooseFromPassMenu(const QString& text);
    /// Makes the main window the active one, as a click on it would.
    void activate();
    void pressKey(Qt::Key key);
    void click(QWidget& widget) { click(widget, QRectF(widget.rect()).center()); }
    void click(QWidget& widget, QPointF at);
    void typeInto(QWidget& field, const QString& text);
    /// An automation key, by its legend.
    QAbstractButton& automationKey(const char* legend);
    void clickControl(ControlHost& host, const QString& control);
    void dragFader(ChannelKind kind, int from, int to);
    void drag(ControlHost& host, QPointF from, QPointF to);
    void labelChannels();

    Application& _app;
    Rig& _rig;
    const QDir _folder;
    const QString _recoveryRoot;
    QString _sessionFile;
    TapeCurves _hands; // what the hands did in the take
    TourGuide _guide;
};

} // namespace tessik
