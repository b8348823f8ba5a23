// What a call throws, as a value that a table of cases can compare.
#pragma once

#include <string>

#include "platform/Error.h"

namespace varnel {

/// The text of the Error that step throws; "" when it throws none.
template <class Step>
std::string ErrorOf(Step&& step) {
    try {
        step();
    } catch (const Error& error) {
        return error.what();
    }
    return "";
}

}  // namespace varnel
