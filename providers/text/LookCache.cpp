#include "providers/text/LookCache.h"

#include <chrono>
#include <mutex>
#include <unordered_map>
#include <utility>

namespace varnel::text {
namespace {

constexpr std::size_t kMostLooks = 64;
/// A file written later than this before now may be written again without a new time: the system's clock for files
/// has steps. In nanoseconds.
constexpr std::int64_t kSettlingTime = 100'000'000;

struct KnownLook {
    FileState state;
    std::shared_ptr<const FileLook> look;
};
struct Known {
    std::mutex mutex;
    std::unordered_map<std::string, KnownLook> looks;  // by path and format
};

/// Written and read by LookOf only.
Known& TheKnown() {
    static Known known;
    return known;
}

bool IsSettled(const FileState& state) {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t now = std::chrono::duration_cast<std::chrono::nanoseconds>(sinceEpoch).count();
    return std::max(state.modified, state.changed) < now - kSettlingTime;
}

}  // namespace

std::shared_ptr<const FileLook> LookOf(const std::string& storedPath, const std::string& fileName,
                                       const TextFormat& format, std::size_t bufferBytes) {
    InputFile file(storedPath);
    const FileState state = file.State();
    const std::string key = storedPath + '\n' + format.Signature();
    Known& known = TheKnown();
    {
        const std::lock_guard lock(known.mutex);
        const auto found = known.looks.find(key);
        if (found != known.looks.end() && found->second.state == state) return found->second.look;
    }
    const bool isSettled = IsSettled(state);
    const auto source = std::make_shared<FileSource>(std::move(file));
    auto look = std::make_shared<const FileLook>(LookAtFile(source, format, fileName, bufferBytes));
    if (isSettled) {
        const std::lock_guard lock(known.mutex);
        if (known.looks.size() >= kMostLooks) known.looks.clear();
        known.looks.insert_or_assign(key, KnownLook{state, look});
    }
    return look;
}

}  // namespace varnel::text
