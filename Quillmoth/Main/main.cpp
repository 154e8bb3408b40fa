#include "Platform/Linux/Desktop/SingleInstance.h"
#include "Platform/Linux/Desktop/StartUp.h"
#include "Quillmoth/Main/DesktopFactsOf.h"
#include "Quillmoth/Main/Program.h"

#include <QApplication>

#include <cstdlib>
#include <iostream>
#include <optional>
#include <string_view>
#include <vector>

using namespace quillmoth;

namespace {

/// The panel needs to place itself and to take the keyboard, which X11 offers, natively or beside Wayland.
void preferX11() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
}

void describeApplication() {
    QApplication::setApplicationName("quillmoth");
    QApplication::setApplicationVersion(QUILLMOTH_VERSION);
    QApplication::setDesktopFileName("org.quillmoth.Quillmoth");
}

int run(int& argc, char** argv, const std::optional<platform::InstanceRequest>& firstRequest) {
    preferX11();
    const QApplication application(argc, argv);
    describeApplication();
    Program program;
    platform::SingleInstance instance(
        [&program](const platform::InstanceRequest& request) { program.carryOut(request); });
    if (instance.claim() == platform::SingleInstance::Claim::taken)
        return platform::yieldStart(firstRequest, std::cerr);
    program.finishLaunching();
    if (firstRequest)
        program.carryOut(*firstRequest);
    return QApplication::exec();
}

int diagnose(int& argc, char** argv) {
    preferX11();
    const QApplication application(argc, argv);
    describeApplication();
    for (const std::string& line : diagnosis(desktopFacts()))
        std::cout << line << std::endl;
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const platform::StartUp start = platform::beginStart(arguments, QUILLMOTH_VERSION, std::cout, std::cerr);
    if (start.diagnoses)
        return diagnose(argc, argv);
    return start.exitCode ? *start.exitCode : run(argc, argv, start.firstRequest);
}
