#include "providers/mysql/MySqlSession.h"

#include <fmt/format.h>
#include <mysqld_error.h>

#include <new>

#include "providers/mysql/InsertSplitter.h"
#include "providers/mysql/MySqlAppender.h"
#include "providers/mysql/MySqlReader.h"
#include "providers/mysql/MySqlStatement.h"
#include "providers/mysql/StatementKind.h"

namespace varnel::mysql {
namespace {

/// Statements up to here fit every server (its least packet limit is 1024 bytes), so the limit need not be asked.
constexpr std::size_t kAlwaysFits = 1000;
/// Bytes of a packet that are not the statement's.
constexpr std::size_t kPacketMargin = 8;

/// Several statements that count as one: rolled back unless kept. Inside an open transaction it is a save point, so
/// that the transaction itself goes on.
class Bracket {
public:
    explicit Bracket(MySqlLink& link) : link_(link), nested_(link.InTransaction()) {
        link_.Run(nested_ ? "SAVEPOINT varnel_pieces" : "START TRANSACTION");
    }
    ~Bracket() {
        if (!kept_) link_.TryRun(nested_ ? "ROLLBACK TO SAVEPOINT varnel_pieces" : "ROLLBACK");
    }
    Bracket(const Bracket&) = delete;
    Bracket& operator=(const Bracket&) = delete;
    void Keep() {
        link_.Run(nested_ ? "RELEASE SAVEPOINT varnel_pieces" : "COMMIT");
        kept_ = true;
    }

private:
    MySqlLink& link_;
    bool nested_;
    bool kept_ = false;
};

}  // namespace

std::unique_ptr<RowReader> MySqlSession::Query(const std::string& statement) {
    PrepareFor(statement);
    if (ExceedsPacket(statement)) return Execute(statement), nullptr;
    StatementHandle prepared(mysql_stmt_init(link_->Ready()));
    if (!prepared) throw std::bad_alloc();
    if (mysql_stmt_prepare(prepared.get(), statement.data(), statement.size()) != 0) {
        if (mysql_stmt_errno(prepared.get()) == ER_UNSUPPORTED_PS) return RunUnprepared(statement);
        link_->Fail(prepared.get());
    }
    if (mysql_stmt_param_count(prepared.get()) > 0) return RunUnprepared(statement);  // the server names the stray "?"
    if (mysql_stmt_execute(prepared.get()) != 0) link_->Fail(prepared.get());
    if (mysql_stmt_field_count(prepared.get()) > 0) return std::make_unique<MySqlReader>(link_, std::move(prepared));
    if (!DropFurtherResults(prepared.get())) link_->Fail(prepared.get());
    return nullptr;
}

void MySqlSession::Execute(const std::string& statement) {
    PrepareFor(statement);
    if (ExceedsPacket(statement))
        ExecuteInPieces(statement);
    else
        link_->Run(statement);
}

void MySqlSession::StartExecute(const std::string& statement) {
    PrepareFor(statement);
    if (ExceedsPacket(statement))
        ExecuteInPieces(statement);
    else
        link_->StartRun(statement);
}

std::unique_ptr<PreparedStatement> MySqlSession::Prepare(const std::string& statement,
                                                         std::span<const ParameterInfo> parameters) {
    (void)parameters;  // values are bound by their own kinds; the server knows the columns' types
    return std::make_unique<MySqlStatement>(link_, statement);
}

std::unique_ptr<Appender> MySqlSession::OpenAppender(const std::string& selectStatement) {
    return std::make_unique<MySqlAppender>(link_, selectStatement);
}

void MySqlSession::PrepareFor(const std::string& statement) {
    const StatementKind kind = KindOfStatement(statement);
    link_->Ready();
    link_->UseMode(kind.writes ? SqlMode::Writing : SqlMode::LogIn);
    if (kind.mayAlterSession) link_->NoteAltered();
}

bool MySqlSession::ExceedsPacket(const std::string& statement) {
    return statement.size() > kAlwaysFits && statement.size() + kPacketMargin > link_->PacketLimit();
}

void MySqlSession::ExecuteInPieces(const std::string& statement) {
    const std::size_t room = link_->PacketLimit() - kPacketMargin;
    const auto parts = SplitInsert(statement);
    if (!parts) FailTooLarge("The statement", statement.size());
    for (const auto row : parts->rows)
        if (parts->SizeAround() + row.size() > room) FailTooLarge("One row of the statement", row.size());
    Bracket bracket(*link_);
    std::string piece;
    for (InsertPieces pieces(*parts, room); pieces.Next(piece);) link_->Run(piece);
    bracket.Keep();
}

/// For what the server does not prepare: nothing of that sort returns rows.
std::unique_ptr<RowReader> MySqlSession::RunUnprepared(const std::string& statement) {
    if (link_->Run(statement))
        throw Error(ErrorKind::NotSupported, link_->Options().Place(),
                    "The server cannot stream the rows of this statement, since it does not prepare it.");
    return nullptr;
}

void MySqlSession::FailTooLarge(const char* what, std::size_t bytes) {
    throw Error(ErrorKind::Constraint, link_->Options().Place(),
                fmt::format("{} has {} bytes, which is more than the server takes: its max_allowed_packet is {} bytes "
                            "and must be raised on the server.",
                            what, bytes, link_->PacketLimit()));
}

}  // namespace varnel::mysql
