// Sessions whose rows come so slowly that somebody can have a word while they are loaded.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tests/session/TextSession.h"

namespace varnel {

/// A way of writing a target.
struct Way {
    const char *name, *targetKind;
};

inline void PrintTo(const Way& way, std::ostream* out) {
    *out << way.name;
}

class SlowSessionTest : public TextSessionTest {
protected:
    /// Stores session 1: the slow rows 1 to rows into "copy", then 200 quick rows into "never".
    void Prepare(const Way& way, int rows);
    /// Starts "varnel 1 showoutput".
    std::unique_ptr<RunningProgram> StartShown(const std::string& program = "varnel");
    /// The log holds text now.
    bool LogHas(const std::string& text) const;
    bool IsLoading() const { return LogHas("About to Insert Rows in slow") || LogHas("About to Start Loading Rows"); }
    bool IsOver() const { return LogHas("F.I.N.I.S.H") || LogHas("FINISH"); }
    /// The rows that the target holds.
    std::int64_t Copied();
    bool NeverWasLoaded();
    /// The run was cancelled within "copy", with everything in order: part of its rows written, as many as the log
    /// counts, the closing lines in the log and the outcome recorded.
    void ExpectCancelledInCopy(int rows);
    /// Every row of both tables arrived.
    void ExpectWhole(int rows);

    std::unique_ptr<NativeDatabase> target_;

private:
    std::int64_t LoadedByTheLog() const;
};

}  // namespace varnel
