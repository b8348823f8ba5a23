#include "providers/sql/FailureForm.h"

#include <random>

namespace varnel::sql {
namespace {

constexpr int kMarkWords = 8;

/// Drawn once per process, so that no stored BLOB can be taken for a failure.
const std::string& Mark() {
    static const std::string mark = [] {
        std::random_device source;
        std::string made;
        for (int word = 0; word < kMarkWords; ++word) made += std::to_string(source()) + '\0';
        return made;
    }();
    return mark;
}

}  // namespace

StoredForm StoreFailure(std::string_view text, std::string& scratch) {
    scratch.assign(Mark()).append(text);
    return {StorageClass::Blob, 0, 0, scratch};
}

bool ReadFailureForm(std::string_view blob, Value& out) {
    if (!blob.starts_with(Mark())) return false;
    out.SetFailure(blob.substr(Mark().size()));
    return true;
}

}  // namespace varnel::sql
