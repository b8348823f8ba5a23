// A private temporary folder for one test, removed with all it holds at the end.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace varnel {

class TempFolder {
public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "varnel-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder " + pattern);
        path_ = pattern;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// Without a trailing separator.
    const std::string& Path() const { return path_; }
    /// The path of a name in the folder; nothing is created.
    std::string File(std::string_view name) const { return path_ + "/" + std::string(name); }
    /// Makes a subfolder, with those above it; returns its path.
    std::string MakeFolder(std::string_view name) const {
        std::filesystem::create_directories(File(name));
        return File(name);
    }
    /// Writes bytes as the whole file name; returns its path.
    std::string Write(std::string_view name, std::string_view bytes = "") const;

private:
    std::string path_;
};

/// All bytes of a file; fails the test when it cannot be read.
inline std::string ReadBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    EXPECT_TRUE(file.good()) << path;
}

inline std::string TempFolder::Write(std::string_view name, std::string_view bytes) const {
    WriteBytes(File(name), bytes);
    return File(name);
}

}  // namespace varnel
