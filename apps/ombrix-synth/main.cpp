#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <cstdlib>
#include <exception>

#include "CommandLine.h"
#include "MissingSeat.h"
#include "QtMessages.h"
#include "ScreenAwake.h"
#include "SessionSharing.h"
#include "Signals.h"
#include "StandardFiles.h"
#include "WindowLife.h"
#include "artwork/Artwork.h"
#include "log/Log.h"
#include "main/MainWindow.h"
#include "main/QtManners.h"
#include "runloop/Clock.h"
#include "screens/MainLoop.h"
#include "screens/OmbrixAppDelegate.h"

namespace {

OmbrixAppDelegate* running = nullptr;

/// A display server that goes away makes Qt end the program from within; what was edited is kept
/// all the same.
void terminateAtExit() {
    if (running)
        running->applicationWillTerminate();
}

void logFirstFrame(QQuickWindow& window, double started) {
    const auto log = [started] {
        Log::line("first frame after %.0f ms", 1000 * (Clock::monotonic() - started));
    };
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, log,
                     Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

int open(OmbrixAppDelegate& delegate, SessionSharing& desktop, const CommandLine& line,
         double started) {
    const Signals signals;
    const std::string problem = line.device ? "" : AudioSetup::useKept(UserDefaults());
    delegate.didFinishLaunchingWithOptions(line.files);
    OmbrixViewController& controller = *delegate.viewController();
    controller.sharing()->setDesktop(&desktop);
    if (!problem.empty())
        controller.notices()->tell(problem);
    const MainWindow window(controller);
    if (!window.window()) {
        tellUser("the window cannot be made; ombrix-synth --verbose says why");
        return 1;
    }
    const WindowLife life(delegate, *window.window());
    const ScreenAwake awake(controller);
    logFirstFrame(*window.window(), started);
    QObject::connect(&signals, &Signals::silenceWanted, &controller,
                     &OmbrixViewController::silence);
    QObject::connect(&signals, &Signals::stopWanted, &controller, [&delegate] {
        delegate.applicationWillTerminate();
        QGuiApplication::exit(0);
    });
    return QGuiApplication::exec();
}

int run(int argc, char** argv) {
    const double started = Clock::monotonic();
    CommandLine line;
    if (const auto code = line.read({argv, static_cast<std::size_t>(argc)}))
        return *code;
    QtMessages::listen();
    QtManners::settle();
    int ownArguments = argc > 0 ? 1 : 0;  // the rest is ours, none of it Qt's
    QGuiApplication application(ownArguments, argv);
    QtMessages::started();
    beginAnewWithoutSeat(argv);
    QGuiApplication::setApplicationDisplayName("Ombrix Synth");
    QGuiApplication::setDesktopFileName("ombrix-synth");  // how desktops know it, and its icon
    QGuiApplication::setWindowIcon(QPixmap::fromImage(Artwork::image("ombrix-synth.png", 2)));
    SessionSharing desktop;
    OmbrixAppDelegate delegate;
    const MainLoop loop;
    running = &delegate;
    std::atexit(terminateAtExit);
    const int code = open(delegate, desktop, line, started);
    delegate.applicationWillTerminate();
    running = nullptr;
    return code;
}

}  // namespace

int main(int argc, char** argv) {
    fillStandardFiles();
    try {
        return run(argc, argv);
    } catch (const std::exception& failure) {  // out of memory, in practice
        tellUser("stopped: %s", failure.what());
        return 1;
    }
}
