#include "tools/check/ScratchFolder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/StoredPath.h"

namespace varnel::admin {

ScratchFolder::ScratchFolder() {
    std::error_code error;
    const std::filesystem::path base = std::filesystem::temp_directory_path(error);
    std::string pattern = (base / "varnel-check-XXXXXX").string();
    if (error || mkdtemp(pattern.data()) == nullptr)
        throw Error(ErrorKind::Io, pattern, "no folder for trials can be made in '" + base.string() + "'");
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void ScratchFolder::Link(const std::string& name, const std::string& storedPath) const {
    std::error_code error;
    std::filesystem::create_symlink(std::filesystem::absolute(LocalPath(storedPath)), File(name), error);
    if (error) throw Error(ErrorKind::Io, File(name), error.message() + ": '" + File(name) + "'");
}

void ScratchFolder::Write(const std::string& name, const std::string& bytes) const {
    OutputFile file(File(name), OutputFile::Mode::Truncate);
    file.Write(bytes);
    file.Close();
}

}  // namespace varnel::admin
