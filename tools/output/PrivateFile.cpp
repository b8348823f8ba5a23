#include "tools/output/PrivateFile.h"

#include <filesystem>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/StoredPath.h"

namespace varnel::admin {
namespace {

/// A file beside the one that is wanted, gone unless it has become that one.
class Part {
public:
    explicit Part(const std::string& file) : path_(LocalPath(file) + ".part") { Remove(); }
    ~Part() { Remove(); }
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;
    const std::string& Path() const { return path_; }

private:
    void Remove() const {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    std::string path_;
};

}  // namespace

void WritePrivateFile(const std::string& file, std::string_view text, bool replace) {
    if (!replace && FileExists(file))
        throw Error(ErrorKind::Misuse, file,
                    file + " exists already and is left as it is; name another file, or replace it with --replace");
    const Part part(file);
    OutputFile output(part.Path(), OutputFile::Mode::NewPrivate);
    output.Write(text);
    output.Close();
    if (!replace) return RenameFile(part.Path(), file);
    std::error_code failure;
    std::filesystem::rename(part.Path(), LocalPath(file), failure);
    if (failure) throw Error(ErrorKind::Io, file, FileErrorText(failure.value(), file));
}

}  // namespace varnel::admin
