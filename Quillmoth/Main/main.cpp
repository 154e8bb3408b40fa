#include "Platform/Linux/Desktop/SessionDisplay.h"
#include "Platform/Linux/Desktop/SingleInstance.h"
#include "Platform/Linux/X11/Server/X11Connection.h"
#include "Platform/Posix/CoreFiles.h"
#include "Quillmoth/Main/DesktopFactsOf.h"
#include "Quillmoth/Main/QuillmothApp.h"
#include "Quillmoth/Main/StartUp.h"

#include <QApplication>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using namespace quillmoth;

namespace {

constexpr int kFailed = 1;

int failWithoutDisplay(const std::string& problem) {
    std::cerr << "quillmoth: There is no display to show windows on: " << problem << '.' << std::endl;
    return kFailed;
}

/// The toolkit ends its last words with abort(), and where it begins nothing else is fatal.
void failWithTheToolkit(QtMsgType type, const QMessageLogContext&, const QString& message) {
    std::cerr << message.toStdString() << std::endl;
    if (type == QtFatalMsg)
        std::_Exit(failWithoutDisplay("Qt cannot use the one that is there, for the reason above"));
}

/// Brings the toolkit up; the display has been found to be there.
std::unique_ptr<QApplication> makeApplication(int& argc, char** argv, const std::string& plugins) {
    qputenv("QT_QPA_PLATFORM", QByteArray::fromStdString(plugins));
    QtMessageHandler former = qInstallMessageHandler(failWithTheToolkit);
    auto application = std::make_unique<QApplication>(argc, argv);
    qInstallMessageHandler(former);
    return application;
}

Result<std::string> findDisplay() {
    std::vector<std::filesystem::path> pluginFolders;
    for (const QString& folder : QCoreApplication::libraryPaths())
        pluginFolders.emplace_back(folder.toStdString());
    return platform::findSessionDisplay(pluginFolders, platform::X11Connection::hasServer);
}

void describeApplication() {
    QApplication::setApplicationName("quillmoth");
    QApplication::setApplicationVersion(QUILLMOTH_VERSION);
    QApplication::setDesktopFileName("org.quillmoth.Quillmoth");
}

int run(int& argc, char** argv, const std::optional<platform::InstanceRequest>& firstRequest) {
    const auto display = findDisplay();
    if (!display)
        return failWithoutDisplay(display.error().description);
    const auto application = makeApplication(argc, argv, *display);
    describeApplication();
    QuillmothApp program;
    platform::SingleInstance instance(
        [&program](const platform::InstanceRequest& request) { program.carryOut(request); });
    if (instance.claim() == platform::SingleInstance::Claim::taken) {
        program.finishWriting();
        return yieldStart(firstRequest, std::cerr);
    }
    program.finishLaunching();
    if (firstRequest)
        program.carryOutFirst(*firstRequest);
    return QApplication::exec();
}

int diagnose(int& argc, char** argv) {
    const auto display = findDisplay();
    std::unique_ptr<QCoreApplication> application;
    if (display)
        application = makeApplication(argc, argv, *display);
    else
        application = std::make_unique<QCoreApplication>(argc, argv);
    describeApplication();
    const std::string problem = display ? "" : display.error().description;
    for (const std::string& line : diagnosis(desktopFacts(problem)))
        std::cout << line << std::endl;
    return display ? 0 : kFailed;
}

} // namespace

int main(int argc, char** argv) {
    // The key would stand in them, and what the user has written.
    platform::forbidCoreFiles();
    // A log that nobody reads any more ends nothing. A handler, unlike SIG_IGN, is not passed on to programs
    // that are started from here.
    std::signal(SIGPIPE, [](int) {});
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const StartUp start = beginStart(arguments, QUILLMOTH_VERSION, std::cout, std::cerr);
    if (start.diagnoses)
        return diagnose(argc, argv);
    return start.exitCode ? *start.exitCode : run(argc, argv, start.firstRequest);
}
