// The module's entry point: a window, or the reason why there is none.
#include "ui/WindowModule.h"

#include <QApplication>
#include <clocale>
#include <cstdlib>
#include <string>

#include "ui/qt/WindowFace.h"

namespace varnel::window {

namespace {

std::string Setting(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// A platform that draws where nobody sees it, and that never fails to start.
constexpr std::string_view kUnseen = "offscreen";

/// The toolkit's platforms in the order in which they are tried. The last one is there so that the toolkit does not end
/// the process when no display can be reached. "" when none needs to be tried.
std::string Platforms() {
    std::string wanted = Setting("QT_QPA_PLATFORM");
    if (wanted.empty() && !Setting("WAYLAND_DISPLAY").empty()) wanted = "wayland";
    if (!Setting("DISPLAY").empty() && wanted.find("xcb") == std::string::npos && !wanted.starts_with(kUnseen)) {
        wanted += wanted.empty() ? "xcb" : ";xcb";
    }
    return wanted.empty() ? "" : wanted + ";" + std::string(kUnseen);
}

void DropMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

/// What a program without a window has: every number is written and read as in C, whatever the user's language.
class LocaleKept {
public:
    LocaleKept() : before_(std::setlocale(LC_ALL, nullptr)) {}
    ~LocaleKept() { std::setlocale(LC_ALL, before_.c_str()); }
    LocaleKept(const LocaleKept&) = delete;
    LocaleKept& operator=(const LocaleKept&) = delete;

private:
    std::string before_;
};

/// The arguments that the toolkit keeps references to.
struct Arguments {
    std::string program = "varnel", option = "-platform", platforms;
    char* words[4] = {nullptr, nullptr, nullptr, nullptr};
    int count = 3;
};

/// Null when only the unseen platform could be started and nobody asked for it.
std::unique_ptr<QApplication> StartToolkit(const std::string& platforms) {
    static Arguments arguments;
    arguments.platforms = platforms;
    arguments.words[0] = arguments.program.data();
    arguments.words[1] = arguments.option.data();
    arguments.words[2] = arguments.platforms.data();
    const LocaleKept locale;
    const auto messages = qInstallMessageHandler(DropMessage);
    auto application = std::make_unique<QApplication>(arguments.count, arguments.words);
    qInstallMessageHandler(messages);
    const bool unseen = QGuiApplication::platformName() == QLatin1String(kUnseen.data());
    if (unseen && !platforms.starts_with(kUnseen)) return nullptr;
    QApplication::setQuitOnLastWindowClosed(false);
    return application;
}

ProgressForm* OpenWindow(WindowRequest& request) {
    if (request.agreement != kWindowAgreement) {
        request.refusal = "the window's module is of another version";
        return nullptr;
    }
    const std::string platforms = Platforms();
    if (platforms.empty()) {
        request.refusal = "there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set";
        return nullptr;
    }
    auto application = StartToolkit(platforms);
    if (!application) {
        request.refusal = "the display cannot be reached";
        return nullptr;
    }
    auto face = std::make_unique<WindowFace>(std::move(application), request.cancelRequested, request.signalDescriptor);
    face->Window().asking = request.asking;
    return face.release();
}

}  // namespace

}  // namespace varnel::window

extern "C" __attribute__((visibility("default"))) varnel::ProgressForm* VarnelOpenWindow(
    varnel::WindowRequest* request) {
    return varnel::window::OpenWindow(*request);
}
