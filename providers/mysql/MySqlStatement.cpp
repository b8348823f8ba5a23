#include "providers/mysql/MySqlStatement.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "providers/mysql/MySqlReader.h"
#include "providers/mysql/StatementKind.h"

namespace varnel::mysql {
namespace {

/// Up to here a row's texts fit any server's packet (its least limit is 1024), so the limit need not be asked.
constexpr std::uint64_t kAlwaysFits = 512;
/// Bounds of what goes with the row itself, and of one piece sent ahead, in bytes.
constexpr std::uint64_t kMostInline = 64U << 10;
constexpr std::uint64_t kMostPiece = 256U << 10;

SqlMode ModeOf(std::string_view statement) {
    return KindOfStatement(statement).writes ? SqlMode::Writing : SqlMode::LogIn;
}

StatementHandle PrepareIn(MySqlLink& link, SqlMode mode, std::string_view statement) {
    link.UseMode(mode);
    return link.Prepare(statement);
}

}  // namespace

MySqlStatement::MySqlStatement(std::shared_ptr<MySqlLink> link, const std::string& statement)
    : link_(std::move(link)),
      mode_(ModeOf(statement)),
      statement_(PrepareIn(*link_, mode_, statement)),
      parameters_(mysql_stmt_param_count(statement_.get())) {
    if (KindOfStatement(statement).mayAlterSession) link_->NoteAltered();
}

void MySqlStatement::Execute(std::span<const Value> parameters) {
    pointers_.clear();
    for (const Value& value : parameters) pointers_.push_back(&value);
    ExecuteWith(pointers_);
}

void MySqlStatement::ExecuteWith(std::span<const Value* const> parameters) {
    if (parameters.size() != parameters_.Count())
        throw Error(ErrorKind::Misuse, link_->Options().Place(),
                    fmt::format("The statement has {} parameters, not {}.", parameters_.Count(), parameters.size()));
    link_->Ready();
    link_->UseMode(mode_);
    parameters_.Take(parameters);
    if (parameters_.Count() > 0 && mysql_stmt_bind_param(statement_.get(), parameters_.Binds()) != 0)
        link_->Fail(statement_.get());
    SendLongParts();
    if (mysql_stmt_execute(statement_.get()) != 0) link_->Fail(statement_.get());
    if (mysql_stmt_field_count(statement_.get()) > 0 && mysql_stmt_free_result(statement_.get()) != 0)
        link_->Fail(statement_.get());
    if (!DropFurtherResults(statement_.get())) link_->Fail(statement_.get());
}

void MySqlStatement::SendLongParts() {
    std::uint64_t total = 0;
    for (std::size_t k = 0; k < parameters_.Count(); ++k) total += parameters_.Content(k).size();
    if (total <= kAlwaysFits) return;
    const std::uint64_t limit = link_->PacketLimit();
    RefuseOversized(limit);
    std::uint64_t room = std::min(kMostInline, limit / 2);
    for (std::size_t k = 0; k < parameters_.Count(); ++k) {
        const auto content = parameters_.Content(k);
        if (content.size() <= room)
            room -= content.size();
        else
            SendLong(static_cast<unsigned>(k), content, limit);
    }
}

void MySqlStatement::SendLong(unsigned parameter, std::string_view content, std::uint64_t limit) {
    const std::uint64_t piece = std::min(kMostPiece, limit / 2);
    for (std::size_t at = 0; at < content.size(); at += piece) {
        const auto part = content.substr(at, piece);
        if (mysql_stmt_send_long_data(statement_.get(), parameter, part.data(), part.size()) != 0)
            link_->Fail(statement_.get());
    }
}

void MySqlStatement::RefuseOversized(std::uint64_t limit) const {
    for (std::size_t k = 0; k < parameters_.Count(); ++k)
        if (parameters_.Content(k).size() >= limit)
            throw Error(ErrorKind::Constraint, link_->Options().Place(),
                        fmt::format("A value of {} bytes is larger than the server takes: its max_allowed_packet is {} "
                                    "bytes and must be raised on the server.",
                                    parameters_.Content(k).size(), limit));
}

}  // namespace varnel::mysql
