// What a run says to a window that lives in a process of its own, as bytes on a stream.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace varnel {

/// The calls of ProgressForm that go to the window, by name.
enum class FormCall : std::uint8_t {
    SetCaption,
    SetSrcDestLabel,
    ReplaceLogTxt,
    AppendLogTxt,
    ScrollLogTxt,
    RefreshLogTxt,
    SetLabel2,
    RefreshLabel2,
    SetRowProMin,
    SetRowProMax,
    SetRowProValue,
    StayUntilClosed,
};

/// What the window's process says, a byte each: Cancelled and Answered are the answers to a question. Refused is its
/// last word and followed by the reason up to the end of the stream; it is said in place of Shown.
enum class WindowWord : char { Shown = 'S', Refused = 'R', Asking = '?', Answered = '.', Cancelled = 'C' };

/// A call and its argument: the call, the argument's length in bytes (32 bits in the machine's order), the argument.
inline void AppendCall(std::string& out, FormCall call, std::string_view argument = {}) {
    const auto length = static_cast<std::uint32_t>(argument.size());
    char head[1 + sizeof length];
    head[0] = static_cast<char>(call);
    std::memcpy(head + 1, &length, sizeof length);
    out.append(head, sizeof head).append(argument);
}

inline void AppendCall(std::string& out, FormCall call, float argument) {
    char bytes[sizeof argument];
    std::memcpy(bytes, &argument, sizeof argument);
    AppendCall(out, call, std::string_view(bytes, sizeof bytes));
}

struct FormMessage {
    FormCall call;
    std::string_view argument;
};

/// Takes the first whole message off stream; false when there is none yet.
inline bool TakeMessage(std::string_view& stream, FormMessage& message) {
    std::uint32_t length = 0;
    constexpr std::size_t kHead = 1 + sizeof length;
    if (stream.size() < kHead) return false;
    std::memcpy(&length, stream.data() + 1, sizeof length);
    if (stream.size() - kHead < length) return false;
    message = {static_cast<FormCall>(stream[0]), stream.substr(kHead, length)};
    stream.remove_prefix(kHead + length);
    return true;
}

}  // namespace varnel
