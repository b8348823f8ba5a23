// The lock file beside an Access database ("x.ldb", "x.laccdb"), by which the programs of its users know one another.
// It holds 64 bytes for each user: 32 of the machine's name, 32 of the user's, zero-padded. Who uses the database has a
// byte of the file locked, beyond its end.
#pragma once

#include <string>

#include "platform/DiskFile.h"

namespace varnel::access {

/// Ours, for as long as we write.
class UserLockFile {
public:
    /// databasePath: stored. Throws Error{Io} naming the first user when another program has the database open, or when
    /// the file cannot be made. A lock file that nobody holds does not count.
    explicit UserLockFile(const std::string& databasePath);
    /// Removes the file when it is ours.
    ~UserLockFile();
    UserLockFile(const UserLockFile&) = delete;
    UserLockFile& operator=(const UserLockFile&) = delete;

private:
    DiskFile file_;
    bool ours_ = false;
};

}  // namespace varnel::access
