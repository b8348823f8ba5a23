// The question that stands between a wish to cancel and a cancelled run, the same in every face.
#pragma once

namespace varnel {

inline constexpr char kCancelQuestion[] = "Are you sure to cancel Loading";
inline constexpr char kCancelTitle[] = "Cancel Loading";

}  // namespace varnel
