#include "ui/OpenForm.h"

#include <dlfcn.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/Signals.h"
#include "platform/StoredPath.h"
#include "ui/TerminalForm.h"
#include "ui/WindowModule.h"

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

std::unique_ptr<ProgressForm> OpenWindow(bool* cancelRequested, std::string& refusal) {
    const std::string file = ModuleFile();
    if (file.empty()) {
        refusal = std::string(kWindowModule) + " is not installed";
        return nullptr;
    }
    void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);  // stays open: a toolkit does not survive unloading
    void* entry = module == nullptr ? nullptr : dlsym(module, kOpenWindowName);
    if (entry == nullptr) {
        refusal = dlerror();
        return nullptr;
    }
    WindowRequest request{kWindowAgreement, cancelRequested, CancelSignalDescriptor(), ""};
    std::unique_ptr<ProgressForm> window(reinterpret_cast<OpenWindowFunction*>(entry)(&request));
    refusal = request.refusal;
    return window;
}

}  // namespace

std::unique_ptr<ProgressForm> OpenForm(bool* cancelRequested) {
    std::string refusal;
    if (auto window = OpenWindow(cancelRequested, refusal)) return window;
    std::fprintf(stderr, "varnel: no window (%s); the progress is shown here\n", refusal.c_str());
    return std::make_unique<TerminalForm>();
}

}  // namespace varnel
