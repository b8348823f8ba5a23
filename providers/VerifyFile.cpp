#include "providers/VerifyFile.h"

#include "providers/sql/VerifyFile.h"

namespace varnel {

FileReport VerifyFile(const std::string& storedPath, const std::string& password, const RowsSeen& seen) {
    return sql::VerifyFile(storedPath, password, seen);
}

}  // namespace varnel
