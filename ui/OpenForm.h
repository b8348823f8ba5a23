// Which face a run with "showoutput" gets.
#pragma once

#include <memory>

#include "ui/ProgressForm.h"

namespace varnel {

/// The window; the terminal face where the window's module is missing or no display can be reached, with the reason on
/// standard error. A confirmed cancel sets *cancelRequested.
std::unique_ptr<ProgressForm> OpenForm(bool* cancelRequested);

}  // namespace varnel
