#include "providers/foxpro/FoxProRows.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kBlockBytes = 256 * 1024;
constexpr std::size_t kCopyBytes = 32 * 1024;

}  // namespace

FoxProRows::FoxProRows(std::shared_ptr<DbfFile> file, std::vector<std::string> columnNames,
                       std::span<const std::size_t> wanted, bool showDeleted)
    : file_(std::move(file)),
      hold_(file_->HoldForReading()),
      columnNames_(std::move(columnNames)),
      wanted_(wanted.begin(), wanted.end()),
      showDeleted_(showDeleted),
      recordBytes_(file_->Header().recordBytes),
      last_(file_->Records()),
      reader_(std::make_unique<FieldReader>(file_->Header(), file_->Memo())) {
    for (const std::size_t column : wanted_) {
        if (column < columnNames_.size()) continue;
        throw Error(ErrorKind::Misuse, file_->Name(),
                    "'" + file_->Name() + "' has no column " + std::to_string(column + 1));
    }
    block_.resize(std::max<std::size_t>(kBlockBytes / recordBytes_, 1) * recordBytes_);
    file_->AddWatcher(*this);
}

FoxProRows::~FoxProRows() {
    file_->RemoveWatcher(*this);
}

bool FoxProRows::Next(std::span<Value> row) {
    if (!NextRecord()) return false;
    for (std::size_t k = 0; k < wanted_.size(); ++k) ReadValue(wanted_[k], row[k]);
    return true;
}

/// Stands on the next record that is a row.
bool FoxProRows::NextRecord() {
    for (;;) {
        if (inBlock_ == blockRecords_ && !NextBlock()) return false;
        record_ = std::span<const std::uint8_t>(block_).subspan(inBlock_ * recordBytes_, recordBytes_);
        current_ = blockStart_ + inBlock_++;
        if (showDeleted_ || record_[0] != kDeletedFlag) return true;
    }
}

bool FoxProRows::NextBlock() {
    blockStart_ += blockRecords_;
    blockRecords_ = inBlock_ = 0;
    if (blockStart_ > last_) {
        const bool isHeld = std::exchange(hold_, nullptr) != nullptr;
        if (isHeld && !file_->Damage().empty()) throw Error(ErrorKind::Corrupt, file_->Name(), file_->Damage());
        return false;
    }
    const std::size_t count =
        static_cast<std::size_t>(std::min<RecordNumber>(block_.size() / recordBytes_, last_ - blockStart_ + 1));
    const std::span<std::uint8_t> into = std::span(block_).first(count * recordBytes_);
    if (keptRecords_) {
        const RecordNumber left = last_ - blockStart_ + 1;
        keptRecords_->Read(keptRecords_->Size() - left * recordBytes_, into);
    } else {
        file_->ReadRecords(blockStart_, count, into);
    }
    blockRecords_ = count;
    return true;
}

void FoxProRows::ReadValue(std::size_t column, Value& value) {
    const CellFault fault = reader_->Read(file_->Header().fields[column], record_, value);
    if (fault == CellFault::None) return;
    value.SetFailure(std::string(FaultWords(fault)) + " in '" + file_->Name() + "', record " +
                     std::to_string(current_) + ", column '" + columnNames_[column] + "'");
}

bool FoxProRows::WantsMemos() const {
    const DbfHeader& header = file_->Header();
    return std::any_of(wanted_.begin(), wanted_.end(), [&](std::size_t column) {
        return KindOfField(header.fields[column], header.dialect) == FieldKind::Memo;
    });
}

void FoxProRows::BeforeChange(bool memosGo) {
    if (inBlock_ == blockRecords_ && blockStart_ + blockRecords_ > last_) return;  // all rows were read
    if (!keptRecords_) KeepRecords();
    if (memosGo && !keptMemos_ && file_->MemoBytes() != nullptr && WantsMemos()) KeepMemos(*file_->MemoBytes());
}

void FoxProRows::KeepRecords() {
    auto kept = std::make_unique<KeptCopy>();
    std::vector<std::uint8_t> buffer(std::max<std::size_t>(kCopyBytes / recordBytes_, 1) * recordBytes_);
    for (RecordNumber next = blockStart_ + blockRecords_; next <= last_;) {
        const std::size_t count =
            static_cast<std::size_t>(std::min<RecordNumber>(buffer.size() / recordBytes_, last_ - next + 1));
        const std::span<std::uint8_t> part = std::span(buffer).first(count * recordBytes_);
        file_->ReadRecords(next, count, part);
        kept->Add(part);
        next += count;
    }
    keptRecords_ = std::move(kept);
}

void FoxProRows::KeepMemos(const ByteFile& memos) {
    auto kept = std::make_unique<KeptCopy>();
    std::array<std::uint8_t, kCopyBytes> buffer;
    for (std::uint64_t at = 0; at < memos.Size();) {
        const std::size_t got = memos.Read(at, buffer);
        if (got == 0) break;
        kept->Add({buffer.data(), got});
        at += got;
    }
    keptMemos_ = std::move(kept);
    keptMemoReader_ = OpenMemoReader(*keptMemos_, file_->Header().memo);
    reader_ = std::make_unique<FieldReader>(file_->Header(), keptMemoReader_.get());
}

}  // namespace varnel::foxpro
