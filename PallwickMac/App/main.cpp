#include <PallwickMac/App/PallwickMacApp.h>
#include <PallwickMac/Platform/PlatformFactory.h>

#include <QApplication>

#include <cstdlib>
#include <memory>
#include <utility>

int main() {
    using namespace pallwick;
    try {
        preparePlatform();
        const ActivationToken token = ActivationToken::ofThisStart();
        PallwickMacApp::prepareToolkit();
        // The program has no options; the toolkit would find its own among the real arguments.
        int argumentCount = 1;
        char programName[] = "pallwick";
        char* arguments[] = {programName, nullptr};
        const QApplication application(argumentCount, arguments);
        std::unique_ptr<DesktopPlatform> platform = makePlatform();
        if (!platform->claimInstance(token)) {
            return 0;
        }
        // Without its desktop the program cannot even take its leave in order: whatever the toolkit does next, a
        // library beneath it finds out too and says so in words of its own.
        PallwickMacApp app(
            std::move(platform), [] { return std::make_unique<PresetStore>(); },
            [](int status) { std::_Exit(status); });
        return app.run();
    } catch (const PlatformUnavailable& error) {
        reportFailure(error.what());
        return 1;
    }
}
