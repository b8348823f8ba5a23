// The agreement between the program and the module that draws the window. The module is opened at run time, in a
// process of the window's own, and knows nothing of the program but what is handed to it here.
#pragma once

#include <functional>

#include "ui/ProgressForm.h"

namespace varnel {

/// Counts up when this agreement or ProgressForm changes; a module of another number is not used.
inline constexpr int kWindowAgreement = 2;

struct WindowRequest {
    int agreement = kWindowAgreement;
    bool* cancelRequested = nullptr;   ///< set when a cancel is confirmed in the window
    int signalDescriptor = -1;         ///< readable once a signal asks the process to stop; -1 for none
    std::function<void(bool)> asking;  ///< called with true when a question opens, with false once its answer is noted
    const char* refusal = "";          ///< out: why no window was opened
};

/// The module's one entry point, exported as kOpenWindowName. Returns the shown window, owned by the caller, or null
/// with the reason in request->refusal. It never ends the process and never waits for a person.
using OpenWindowFunction = ProgressForm*(WindowRequest* request);
inline constexpr char kOpenWindowName[] = "VarnelOpenWindow";
/// The module's file, beside the program or, once installed, in this folder seen from there.
inline constexpr char kWindowModule[] = "varnel-window.so";
inline constexpr char kInstalledModules[] = "../lib/varnel/modules";

}  // namespace varnel
