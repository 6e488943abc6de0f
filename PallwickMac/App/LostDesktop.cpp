#include <PallwickMac/App/LostDesktop.h>

#include <QString>
#include <QtGlobal>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace pallwick {

namespace {

QtMessageHandler& handlerBefore() {
    static QtMessageHandler handler = nullptr;
    return handler;
}

// The toolkit's hook takes no context, so what it needs to know cannot be handed to it.
void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (message.startsWith(QLatin1String("The X11 connection broke"))) {
        reportLostDesktop("the connection to the X server was lost");
        // What the toolkit does after this message: it exits. In order, though, and on that way libraries beneath it
        // find the same out and say so in words of their own.
        std::_Exit(1);
    } else if (handlerBefore() != nullptr) {
        handlerBefore()(type, context, message);
    }
}

}  // namespace

void reportFailure(const char* what) {
    std::fprintf(stderr, "pallwick: %s\n", what);
}

void reportLostDesktop(const char* reason) {
    static std::atomic<bool> reported = false;
    if (!reported.exchange(true)) {
        reportFailure(reason);
    }
}

void adoptToolkitReportOfLostDesktop() {
    handlerBefore() = qInstallMessageHandler(handleMessage);
}

}  // namespace pallwick
