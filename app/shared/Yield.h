// The places at which a run lets others have a word: the window handles its events, a noted signal becomes a cancel.
#pragma once

namespace varnel {

/// Turns a noted signal into CancelRequested (a face may ask first) and, when the window is shown, lets it handle its
/// events.
void YieldToUserInterface();
/// The first half alone: for places that only ask whether to go on.
void TakeCancelSignal();

}  // namespace varnel
