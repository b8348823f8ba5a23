#include "providers/sql/StorePrepared.h"

#include <algorithm>

#include "platform/Error.h"

namespace varnel::sql {

StorePrepared::StorePrepared(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                             const ParsedStatement& parsed)
    : markers_(std::make_shared<std::vector<Value>>(parsed.markers)),
      change_(WriteStoreChange(std::move(store), rules, parsed, markers_)) {}

void StorePrepared::Execute(std::span<const Value> parameters) {
    if (parameters.size() != markers_->size())
        throw Error(ErrorKind::Misuse, "", "No value given for one or more required parameters.");
    std::copy(parameters.begin(), parameters.end(), markers_->begin());
    change_->Run();
}

}  // namespace varnel::sql
