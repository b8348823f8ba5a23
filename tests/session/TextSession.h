// Sessions with text files on one side or both.
#pragma once

#include <string>
#include <string_view>

#include "tests/session/SessionTest.h"

namespace varnel {

class TextSessionTest : public SessionTest {
protected:
    TextSessionTest();
    /// The connection string of a folder of text files.
    static std::string TextConnection(const std::string& folder);
    /// The session writes text: one file per table, in the layout.
    void TargetIsText(const TestTextLayout& layout);
    /// The session reads every file of the folder "drop" that matches *.csv into the target of template.
    void PollInto(const TestTable& polled);
    void PutFile(const std::string& name, std::string_view bytes) const { folder_.Write(name, bytes); }
    bool Has(const std::string& name) const;
    /// The names of a folder's files whose names begin so, sorted, each followed by a blank. Schema.ini is left out.
    std::string Names(const std::string& folder, const std::string& begin = "") const;
    /// The output holds what tests/data/golden/export has under this name, byte for byte. With UPDATE_GOLDEN=1 in the
    /// environment the golden file is written instead.
    void ExpectGolden(const std::string& golden, const std::string& output) const;
};

}  // namespace varnel
