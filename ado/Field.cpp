#include "ado/Field.h"

#include "ado/Recordset.h"

namespace varnel {

const Value& Field::GetValue() const {
    return owner_->Read(index_);
}

void Field::SetValue(const Value& value) {
    owner_->Assign(index_, value);
}

}  // namespace varnel
