#include "load/RowCopy.h"

#include <utility>

#include "app/flags/SharedFlags.h"
#include "app/shared/Yield.h"
#include "platform/Signals.h"

namespace varnel {

void RowCopy::Run() {
    StartProgress(transfer_);
    if (!trap_.Try([this] { queueLimit_ = target_.QueueLimit(); })) queueLimit_ = 0;
    for (auto at = TestSource(trap_); at != SourcePosition::AtEnd; at = TestSource(trap_)) {
        if (at == SourcePosition::Broken) continue;
        CopyRow();
        if (!YieldAndGoOn()) break;
    }
    Settle();
}

/// A row whose values could not all be set is not written. A row behind which the source breaks is not counted.
void RowCopy::CopyRow() {
    transfer_.rowOk = true;
    trap_.Try([this] { target_.Begin(); });
    for (std::size_t k = 0; k < SrcRs->FieldCount(); ++k) trap_.Try([&] { target_.Set(k); });
    ++transfer_.attempted;
    const bool aside = transfer_.rowOk && queueLimit_ > 0 && PutAside();
    if (transfer_.rowOk && queueLimit_ == 0) trap_.Try([this] { target_.Write(); });
    moving_ = true;
    trap_.Try([] { SrcRs->MoveNext(); });
    moving_ = false;
    if (aside) return;
    Note(transfer_.rowOk);
    if (!transfer_.rowOk) trap_.Try([this] { target_.Drop(); });
}

bool RowCopy::PutAside() {
    if (static_cast<std::size_t>(queued_) == queueLimit_) Settle();
    if (!trap_.Try([this] { target_.Queue(); })) return false;
    ++queued_;
    lastPutAside_ = transfer_.attempted;
    return true;
}

void RowCopy::Note(bool stored) {
    if (stored || failedRow_ == FailedRow::MovesTheBar) ShowRowPro(transfer_.loaded + 1);
    if (!stored) return;
    ++transfer_.loaded;
    ShowLoadedRows(transfer_);
}

void RowCopy::Settle() {
    if (queued_ == 0) return;
    const std::int32_t attempted = transfer_.attempted;
    const bool rowOk = transfer_.rowOk;
    transfer_.attempted = lastPutAside_ - std::exchange(queued_, 0);
    trap_.Try([&] {
        target_.Send([&](const Error* error) {
            ++transfer_.attempted;
            const bool stored = error == nullptr || trap_.Try([&] { throw Error(*error); });
            Note(stored && !(moving_ && transfer_.attempted == attempted));
        });
    });
    transfer_.attempted = attempted;
    transfer_.rowOk = rowOk;
}

/// What a yield may show, or a cancel leave behind, is settled first.
bool RowCopy::YieldAndGoOn() {
    constexpr std::int32_t kRowsPerYield = 10;
    if ((transfer_.loaded + queued_) % kRowsPerYield == 0) {
        if (ShowOutput || CancelSignalNoted()) Settle();
        YieldToUserInterface();
    }
    return !CancelRequested;
}

}  // namespace varnel
