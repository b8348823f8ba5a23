// A private folder outside of everything that the session names, removed at the end: for what must be tried out.
#pragma once

#include <string>

namespace varnel::admin {

class ScratchFolder {
public:
    /// Throws Error{Io}.
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string File(const std::string& name) const { return path_ + "/" + name; }
    /// Makes name a link to the file at a stored path.
    void Link(const std::string& name, const std::string& storedPath) const;
    void Write(const std::string& name, const std::string& bytes) const;

private:
    std::string path_;
};

}  // namespace varnel::admin
