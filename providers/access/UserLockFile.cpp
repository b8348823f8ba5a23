#include "providers/access/UserLockFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/FileLock.h"
#include "platform/StoredPath.h"

namespace varnel::access {
namespace {

constexpr std::size_t kNameSize = 32, kEntrySize = 64;
constexpr std::uint64_t kUserLocksAt = 0x10000001;  ///< the first user's byte; one for each
constexpr std::string_view kOurUser = "Varnel";

using Entry = std::array<std::uint8_t, kEntrySize>;

/// "x.ldb" for "x.mdb", "x.laccdb" for "x.accdb".
std::string LockFilePath(const std::string& databasePath) {
    const std::size_t dot = databasePath.find_last_of("./\\");
    const bool hasExtension = dot != std::string::npos && databasePath[dot] == '.';
    const std::string stem = hasExtension ? databasePath.substr(0, dot) : databasePath;
    const bool ace = hasExtension && FoldCase(databasePath.substr(dot)) == FoldCase(".accdb");
    return stem + (ace ? ".laccdb" : ".ldb");
}

std::string NameIn(std::span<const std::uint8_t> field) {
    std::string name(field.begin(), std::find(field.begin(), field.end(), 0));
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
}

Entry OurEntry() {
    Entry entry{};
    const std::string machine = MachineName().substr(0, kNameSize - 1);
    std::copy(machine.begin(), machine.end(), entry.begin());
    std::copy(kOurUser.begin(), kOurUser.end(), entry.begin() + kNameSize);
    return entry;
}

[[noreturn]] void ThrowInUse(const std::string& databasePath, const Entry& first) {
    throw Error(ErrorKind::Io, databasePath,
                "'" + databasePath + "' is open in another program (machine '" +
                    NameIn(std::span(first).first(kNameSize)) + "', user '" +
                    NameIn(std::span(first).subspan(kNameSize)) + "') and is not written to");
}

}  // namespace

UserLockFile::UserLockFile(const std::string& databasePath) {
    const std::string stored = LockFilePath(databasePath);
    const std::string local = LocalPath(stored);
    file_ = OpenDiskFileIfExists(local, stored, DiskFile::Mode::Existing);
    Entry first{};
    if (file_.IsOpen()) {
        file_.ReadAt(0, first);
        if (BytesAreLocked(file_, 0, 0)) ThrowInUse(databasePath, first);
        ours_ = NameIn(std::span(first).subspan(kNameSize)) == kOurUser;  // left by one of us that was killed
        if (file_.WriteRefusal() != 0) return;
    } else {
        file_ = DiskFile(local, stored, DiskFile::Mode::New);
        ours_ = true;
    }
    if (ours_) file_.WriteAt(0, OurEntry());
    if (!TryLockBytes(file_, LockKind::Exclusive, kUserLocksAt, 1)) ThrowInUse(databasePath, first);
}

UserLockFile::~UserLockFile() {
    if (ours_) file_.RemoveName();
}

}  // namespace varnel::access
