#include "ui/OpenForm.h"

#include <dlfcn.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/Signals.h"
#include "platform/StoredPath.h"
#include "ui/TerminalForm.h"
#include "ui/WindowLink.h"
#include "ui/WindowModule.h"
#include "ui/WindowServer.h"

namespace varnel {

namespace {

/// "" when it is nowhere.
std::string ModuleFile() {
    for (const char* folder : {".", kInstalledModules}) {
        std::string file = FolderOfExecutable() + "/" + folder + "/" + kWindowModule;
        std::error_code unseen;
        if (std::filesystem::exists(file, unseen)) return file;
    }
    return "";
}

/// Null with the reason in request.refusal.
std::unique_ptr<ProgressForm> LoadWindow(const std::string& file, WindowRequest& request) {
    void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);  // stays open: a toolkit does not survive unloading
    void* entry = module == nullptr ? nullptr : dlsym(module, kOpenWindowName);
    if (entry == nullptr) {
        request.refusal = dlerror();
        return nullptr;
    }
    return std::unique_ptr<ProgressForm>(reinterpret_cast<OpenWindowFunction*>(entry)(&request));
}

/// What the window's process does. Toolkits end the process that they are in when the display goes away; therefore it
/// is not the run's.
void BeTheWindow(const std::string& file, ProcessLink& run) {
    bool cancelRequested = false;
    const auto asking = [&](bool open) {
        TellRun(run, open ? WindowWord::Asking : cancelRequested ? WindowWord::Cancelled : WindowWord::Answered);
    };
    WindowRequest request{kWindowAgreement, &cancelRequested, CancelSignalDescriptor(), asking, ""};
    if (const auto window = LoadWindow(file, request)) {
        TellRun(run, WindowWord::Shown);
        ServeWindow(run, *window);
    } else {
        TellRun(run, WindowWord::Refused);
        run.Send(request.refusal, Wait::Yes);
    }
}

/// "" when the window is shown, else why not.
std::string WaitForWindow(ProcessLink& window) {
    if (!window.IsOpen()) return "no process could be started for it";
    char word = 0;
    while (window.IsOpen() && window.Receive(&word, 1, Wait::Yes) == 0) {
    }
    if (word == static_cast<char>(WindowWord::Shown)) return "";
    if (word != static_cast<char>(WindowWord::Refused)) return "its process ended";
    std::string reason;
    char part[256];
    while (window.IsOpen()) reason.append(part, window.Receive(part, sizeof part, Wait::Yes));
    return reason;
}

std::unique_ptr<ProgressForm> OpenWindow(bool* cancelRequested, std::string& refusal) {
    const std::string file = ModuleFile();
    if (file.empty()) {
        refusal = std::string(kWindowModule) + " is not installed";
        return nullptr;
    }
    auto window = ProcessLink::ToNewProcess([&](ProcessLink& run) { BeTheWindow(file, run); });
    refusal = WaitForWindow(window);
    if (!refusal.empty()) return nullptr;
    return std::make_unique<WindowLink>(std::move(window), cancelRequested);
}

}  // namespace

std::unique_ptr<ProgressForm> OpenForm(bool* cancelRequested) {
    std::string refusal;
    if (auto window = OpenWindow(cancelRequested, refusal)) return window;
    std::fprintf(stderr, "varnel: no window (%s); the progress is shown here\n", refusal.c_str());
    return std::make_unique<TerminalForm>();
}

}  // namespace varnel
