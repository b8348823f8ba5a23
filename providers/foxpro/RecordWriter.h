// Rows of values as the bytes of records.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Provider.h"
#include "platform/CodePage.h"
#include "providers/foxpro/DbfHeader.h"
#include "providers/foxpro/FieldKind.h"
#include "providers/foxpro/MemoFile.h"

namespace varnel::foxpro {

/// Used by one thread. Errors name table and column: "Field 'price' of 'x.dbf': Numeric overflow. ...".
class RecordWriter {
public:
    /// header: outlives the writer; its autoincrements are moved on. memo: null when there is none.
    RecordWriter(DbfHeader& header, MemoFile* memo, std::string fileName);

    /// The record of a new row; valid until the next call. values: one per visible field. Fields that are not assigned
    /// are Null where they can be, else empty; autoincrements get their next value. Throws Error{Constraint},
    /// Error{Conversion}; nothing has changed then.
    std::span<const std::uint8_t> NewRecord(std::span<const Value> values, const std::vector<bool>& assigned);
    /// Changes the assigned fields of a record. Throws as above; record may be half changed then.
    void ChangeRecord(std::span<std::uint8_t> record, std::span<const Value> values, const std::vector<bool>& assigned);
    /// Takes back what the last call did to memos and autoincrements.
    void Undo() noexcept;

private:
    static bool IsBlankWithSpaces(FieldKind kind, const DbfField& field);
    void Mark();
    [[noreturn]] void RefuseAutoIncrement(std::size_t k) const;
    void PutAutoIncrement(std::size_t k, std::span<std::uint8_t> record, bool isAssigned);
    void PutBlank(std::size_t k, std::span<std::uint8_t> record) const;
    void PutUnassigned(std::size_t k, std::span<std::uint8_t> record);
    void PutNull(const DbfField& field, std::span<std::uint8_t> record) const;
    void Put(std::size_t k, std::span<std::uint8_t> record, const Value& value);
    void PutValue(std::size_t k, std::span<std::uint8_t> record, const Value& value);
    bool NeedsConversion(std::size_t k, const Value& value) const;
    void PutStored(std::size_t k, std::span<std::uint8_t> record, const Value& value);
    void PutVarying(const DbfField& field, std::span<std::uint8_t> record, std::string_view bytes);
    void PutMemo(const DbfField& field, std::span<std::uint8_t> into, std::string_view bytes);
    std::string_view BytesOf(const Value& value);
    std::string_view FittingBytes(const DbfField& field, const Value& value);
    void SetBit(int bit, std::span<std::uint8_t> record, bool isSet) const;

    DbfHeader& header_;
    MemoFile* memo_;
    std::string fileName_;
    CodePage codePage_;
    std::vector<ColumnInfo> columns_;  ///< of the visible fields, with their kinds
    std::vector<FieldKind> kinds_;
    std::vector<std::uint8_t> record_, blank_;
    std::string scratch_;
    Value converted_;
    std::uint32_t memoMark_ = 0;
    std::vector<std::uint32_t> nextMarks_;
};

/// Takes back what the writer did last, unless that is kept.
class UndoGuard {
public:
    explicit UndoGuard(RecordWriter& writer) : writer_(writer) {}
    ~UndoGuard() {
        if (!kept_) writer_.Undo();
    }
    UndoGuard(const UndoGuard&) = delete;
    UndoGuard& operator=(const UndoGuard&) = delete;
    void Keep() { kept_ = true; }

private:
    RecordWriter& writer_;
    bool kept_ = false;
};

}  // namespace varnel::foxpro
