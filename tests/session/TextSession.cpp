#include "tests/session/TextSession.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace varnel {

TextSessionTest::TextSessionTest() {
    folder_.MakeFolder("in");
    folder_.MakeFolder("out");
    folder_.MakeFolder("drop");
}

std::string TextSessionTest::TextConnection(const std::string& folder) {
    return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder + ";Extended Properties=\"text;HDR=Yes\"";
}

void TextSessionTest::TargetIsText(const TestTextLayout& layout) {
    session_.targetKind = "TEXT";
    session_.targetConnection = TextConnection(Path("out"));
    session_.targetText = layout;
}

void TextSessionTest::PollInto(const TestTable& polled) {
    session_.sourceKind = "TEXTPOLL";
    session_.sourceConnection = TextConnection(Path("drop"));
    session_.folder = Path("drop");
    session_.pattern = "*.csv";
    session_.rename = "done";
    session_.tables = {polled};
}

bool TextSessionTest::Has(const std::string& name) const {
    return std::filesystem::exists(Path(name));
}

std::string TextSessionTest::Names(const std::string& folder, const std::string& begin) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Path(folder))) {
        const std::string name = entry.path().filename();
        if (name != "Schema.ini" && name.starts_with(begin)) names.push_back(name + " ");
    }
    std::sort(names.begin(), names.end());
    std::string all;
    for (const std::string& name : names) all += name;
    return all;
}

void TextSessionTest::ExpectGolden(const std::string& golden, const std::string& output) const {
    const std::string path = std::string(VARNEL_GOLDEN) + "/export/" + golden;
    const std::string written = ReadBytes(Path(output));
    if (const char* update = std::getenv("UPDATE_GOLDEN"); update != nullptr && std::string_view(update) == "1") {
        return WriteBytes(path, written);
    }
    const std::string expected = ReadBytes(path);
    const auto differs = std::mismatch(expected.begin(), expected.end(), written.begin(), written.end());
    if (differs.first == expected.end() && differs.second == written.end()) return;
    const auto line = 1 + std::count(expected.begin(), differs.first, '\n');
    ADD_FAILURE() << output << " differs from " << golden << " in line " << line << ", at byte "
                  << differs.first - expected.begin() << "\nexpected:\n"
                  << expected << "\nwritten:\n"
                  << written;
}

}  // namespace varnel
