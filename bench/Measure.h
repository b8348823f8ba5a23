// Running a program and measuring it: time, processor time and peak memory.
#pragma once

#include <string>

namespace varnel {

struct Measurement {
    double seconds = 0;  ///< from start to end
    double processorSeconds = 0;
    double peakMebibytes = 0;  ///< largest resident size of the program, or of the largest of a shell's programs
    int status = 0;
};

/// Runs a shell command in folder and measures it with all its children. Throws std::runtime_error when it cannot
/// start.
Measurement Measure(const std::string& command, const std::string& folder);
/// The quickest of several runs, or the first that failed; before each run prepare is run unmeasured.
Measurement LeastOf(int runs, const std::string& prepare, const std::string& command, const std::string& folder);

}  // namespace varnel
