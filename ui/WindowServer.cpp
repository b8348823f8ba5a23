#include "ui/WindowServer.h"

namespace varnel {

namespace {

/// How long a click may wait while the run says nothing.
constexpr std::chrono::milliseconds kEventsInterval{20};
constexpr std::size_t kBlock = 65536;

float Number(std::string_view argument) {
    float number = 0;
    if (argument.size() == sizeof number) std::memcpy(&number, argument.data(), sizeof number);
    return number;
}

void Do(ProgressForm& face, const FormMessage& message) {
    switch (message.call) {
        case FormCall::SetCaption:
            return face.SetCaption(message.argument);
        case FormCall::SetSrcDestLabel:
            return face.SetSrcDestLabel(message.argument);
        case FormCall::ReplaceLogTxt:
            return face.ReplaceLogTxt(message.argument);
        case FormCall::AppendLogTxt:
            return face.AppendLogTxt(message.argument);
        case FormCall::ScrollLogTxt:
            return face.ScrollLogTxt();
        case FormCall::RefreshLogTxt:
            return face.RefreshLogTxt();
        case FormCall::SetLabel2:
            return face.SetLabel2(message.argument);
        case FormCall::RefreshLabel2:
            return face.RefreshLabel2();
        case FormCall::SetRowProMin:
            return face.SetRowProMin(Number(message.argument));
        case FormCall::SetRowProMax:
            return face.SetRowProMax(Number(message.argument));
        case FormCall::SetRowProValue:
            return face.SetRowProValue(Number(message.argument));
        case FormCall::StayUntilClosed:
            return face.StayUntilClosed();
    }
}

/// Adds what has come to stream, waiting a little for it; false when the run is gone.
bool Hear(ProcessLink& link, std::string& stream) {
    if (!link.WaitForBytes(kEventsInterval)) return true;
    const std::size_t had = stream.size();
    stream.resize(had + kBlock);
    stream.resize(had + link.Receive(stream.data() + had, kBlock, Wait::No));
    return link.IsOpen();
}

}  // namespace

void TellRun(ProcessLink& link, WindowWord word) {
    const char byte = static_cast<char>(word);
    link.Send({&byte, 1}, Wait::Yes);
}

void ServeWindow(ProcessLink& link, ProgressForm& face) {
    std::string stream;
    while (Hear(link, stream)) {
        std::string_view rest = stream;
        for (FormMessage message{}; TakeMessage(rest, message);) {
            Do(face, message);
            if (message.call == FormCall::StayUntilClosed) return;
        }
        stream.erase(0, stream.size() - rest.size());
        face.DoEvents();
    }
}

}  // namespace varnel
