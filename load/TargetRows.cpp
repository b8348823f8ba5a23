#include "load/TargetRows.h"

#include "load/RecordValues.h"
#include "repository/model/SessionModel.h"

namespace varnel {

void ParameterRows::Set(std::size_t k) {
    const Field& field = SrcRs->Fields(k);
    SetOracleValue(field.Type(), field.GetValue(), command_.Parameters(k).Value);
}

void RecordRows::Begin() {
    DestRs->AddNew();
}

void RecordRows::Set(std::size_t k) {
    Field& target = DestRs->Fields(k);
    target.SetValue(carry_(SrcRs->Fields(k), target, scratch_));
}

void RecordRows::Write() {
    DestRs->Update();
}

void RecordRows::Drop() {
    DestRs->CancelUpdate();
}

std::size_t RecordRows::QueueLimit() {
    return DestRs->QueueLimit();
}

void RecordRows::Queue() {
    DestRs->QueueUpdate();
}

void RecordRows::Send(const RowOutcome& outcome) {
    DestRs->SendUpdates(outcome);
}

}  // namespace varnel
