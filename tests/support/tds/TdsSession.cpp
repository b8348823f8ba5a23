#include "tests/support/tds/TdsSession.h"

#include <sys/socket.h>

#include <algorithm>

#include "tests/support/tds/TdsCatalog.h"

namespace varnel::tds {
namespace {

constexpr unsigned kBatch = 0x01, kCall = 0x03, kAttention = 0x06, kTransaction = 0x0E, kLogIn = 0x10, kPreLogIn = 0x12;
constexpr unsigned kAnswer = 0x04;
constexpr unsigned kMore = 0x01, kError = 0x02, kCount = 0x10, kAttentionSeen = 0x20;
constexpr unsigned kDone = 0xFD, kDoneProcedure = 0xFE, kDoneInProcedure = 0xFF;
constexpr std::size_t kPacket = 4096, kHeader = 8;
constexpr unsigned kExecuteSql = 10, kPrepare = 11, kExecute = 12, kPrepareAndExecute = 13, kUnprepare = 15;

bool ReceiveAll(int socket, char* into, std::size_t count) {
    while (count > 0) {
        const ssize_t got = recv(socket, into, count, 0);
        if (got <= 0) return false;
        into += got;
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

std::string PasswordOf(std::string_view stored) {
    std::string plain;
    for (const char c : stored) {
        const unsigned byte = static_cast<unsigned char>(c) ^ 0xA5U;
        plain += static_cast<char>((byte >> 4 | byte << 4) & 0xFF);
    }
    return FromUtf16(plain);
}

/// A field of the log-in record: its offset and length in characters stand at a fixed place.
std::string_view Field(std::string_view body, std::size_t at) {
    Reader place(body.substr(at));
    const std::size_t offset = place.U16(), characters = place.U16();
    Reader field(body);
    field.Skip(offset);
    return field.Raw(2 * characters);
}

}  // namespace

bool TdsSession::Receive(Message& message) {
    message.body.clear();
    for (;;) {
        unsigned char header[kHeader];
        if (!ReceiveAll(socket_, reinterpret_cast<char*>(header), kHeader)) return false;
        message.type = header[0];
        const std::size_t length = header[2] << 8 | header[3];
        if (length < kHeader) return false;
        const std::size_t had = message.body.size();
        message.body.resize(had + length - kHeader);
        if (!ReceiveAll(socket_, message.body.data() + had, length - kHeader)) return false;
        if ((header[1] & 1) != 0) return true;
    }
}

void TdsSession::Send(bool last) {
    const std::string body = out_.Take();
    out_ = Writer();
    std::string wire;
    for (std::size_t at = 0; at < body.size() || (last && at == 0);) {
        const std::size_t part = std::min(kPacket - kHeader, body.size() - at);
        const std::size_t length = part + kHeader;
        const bool end = last && at + part == body.size();
        const char header[] = {static_cast<char>(kAnswer),
                               static_cast<char>(end ? 1 : 0),
                               static_cast<char>(length >> 8),
                               static_cast<char>(length & 0xFF),
                               0,
                               0,
                               static_cast<char>(++packet_ & 0xFF),
                               0};
        wire.append(header, sizeof header).append(body, at, part);
        at += part;
        if (part == 0) break;
    }
    for (std::size_t sent = 0; sent < wire.size();) {
        const ssize_t count = send(socket_, wire.data() + sent, wire.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) throw std::runtime_error("the other side is gone");
        sent += static_cast<std::size_t>(count);
    }
}

void TdsSession::Serve() {
    Message message;
    while (Receive(message)) {
        packet_ = 0;
        if (message.type == kPreLogIn) {
            // Version, encryption (not supported), instance, thread, several results at once (no).
            const unsigned char answer[] = {0, 0, 26, 0, 6,  1, 0, 32,   0,  1, 2, 0, 33, 0, 1, 3, 0, 34,
                                            0, 0, 4,  0, 34, 0, 1, 0xFF, 15, 0, 0, 0, 0,  0, 2, 0, 0};
            out_.Raw({reinterpret_cast<const char*>(answer), sizeof answer});
            Send(true);
        } else if (message.type == kLogIn) {
            const bool welcome = LogIn(message);
            Send(true);
            if (!welcome) return;
        } else {
            Answer(message);
            Send(true);
        }
    }
}

bool TdsSession::LogIn(const Message& message) {
    const std::string user = FromUtf16(Field(message.body, 40));
    const std::string database = FromUtf16(Field(message.body, 68));
    const std::string password = PasswordOf(Field(message.body, 44));
    if (user != options_.user || password != options_.password) {
        // It tells more than a server should, so that nobody relies on the discretion of servers.
        WriteFailure({18456, "Login failed for user '" + user + "', whose password is not '" + password + "'."});
        WriteDone(kDone, kError, 0);
        return false;
    }
    database_ = std::make_unique<TdsDatabase>(options_.file);
    WriteEnvironment(1, database.empty() ? "master" : database, "master");
    Writer collation;
    collation.U8(7), collation.U8(5), collation.Raw(std::string_view("\x09\x04\xD0\x00\x34", 5)), collation.U8(0);
    out_.U8(0xE3), out_.U16(static_cast<unsigned>(collation.Size())), out_.Raw(collation.Bytes());
    Writer acknowledge;
    acknowledge.U8(1);
    acknowledge.U8(0x74), acknowledge.U8(0), acknowledge.U8(0), acknowledge.U8(4);
    acknowledge.Text("Microsoft SQL Server", 1);
    acknowledge.U32(15);
    out_.U8(0xAD), out_.U16(static_cast<unsigned>(acknowledge.Size())), out_.Raw(acknowledge.Bytes());
    WriteEnvironment(4, "4096", "4096");
    WriteDone(kDone, 0, 0);
    return true;
}

void TdsSession::Answer(const Message& message) {
    if (!database_) throw std::runtime_error("a statement before the log-in");
    Reader in(message.body);
    if (message.type == kAttention) return WriteDone(kDone, kAttentionSeen, 0);
    in.Skip(Reader(message.body).U32());  // the headers, which count themselves
    if (message.type == kBatch) return AnswerBatch(in);
    if (message.type == kCall) return AnswerCalls(in);
    if (message.type == kTransaction) return AnswerTransaction(in);
    throw std::runtime_error("an unknown message");
}

void TdsSession::AnswerBatch(Reader in) {
    std::string utf16;
    while (!in.AtEnd()) utf16 += in.Raw(1);
    Execute(FromUtf16(utf16), {}, kDone, false);
}

void TdsSession::Execute(const std::string& statement, const NamedCells& parameters, unsigned doneToken, bool more) {
    const unsigned following = more ? kMore : 0;
    std::vector<SqlColumn> described;
    const TdsDatabase::Answer answer{[&](const std::vector<SqlColumn>& columns) {
                                         described = columns;
                                         WriteDescription(columns);
                                     },
                                     [&](const std::vector<Cell>& cells) {
                                         CountRow();
                                         out_.U8(0xD1);
                                         for (std::size_t k = 0; k < cells.size(); ++k)
                                             WriteCell(out_, described[k].type, cells[k]);
                                         SendMore();
                                     }};
    try {
        if (!parameters.empty()) CountRow();
        const std::int64_t rows = database_->Run(statement, parameters, answer);
        WriteDone(doneToken, kCount | following, static_cast<std::uint64_t>(rows));
    } catch (const SqlFailure& failure) {
        WriteFailure(failure);
        WriteDone(doneToken, kError | following, 0);
    }
}

void TdsSession::CountRow() {
    if (options_.rowsUntilCrash == 0 || --options_.rowsUntilCrash > 0) return;
    options_.down = options_.staysDown.load();
    throw Crash();
}

void TdsSession::AnswerCalls(Reader in) {
    while (!in.AtEnd()) AnswerCall(in);
}

/// One call of a message that may hold several; the answer of every one but the last says that more comes.
void TdsSession::AnswerCall(Reader& in) {
    const unsigned nameLength = in.U16();
    unsigned procedure = 0;
    std::string name;
    if (nameLength == 0xFFFF) {
        procedure = in.U16();
    } else {
        name = in.Text(nameLength);
        procedure = name == "sp_execute" ? kExecute : name == "sp_unprepare" ? kUnprepare : 0;
    }
    in.Skip(2);
    std::vector<Cell> cells;
    std::string called = "exec " + name;  // as a statement, for procedures that answer a question about tables
    while (!in.AtEnd() && in.Peek() != 0xFF && in.Peek() != 0x80) {
        called += " " + in.Text(in.U8());
        in.Skip(1);
        cells.push_back(ReadParameter(in));
        called += "='" + cells.back().bytes + "'";
    }
    const bool more = !in.AtEnd();
    if (more) in.Skip(1);
    std::size_t from = 0;
    std::string statement;
    int handle = 0;
    if (procedure == kExecuteSql) {
        statement = cells.at(0).bytes, from = 2;
    } else if (procedure == kPrepare || procedure == kPrepareAndExecute) {
        statement = cells.at(2).bytes, from = 3;
        prepared_[handle = nextHandle_++] = statement;
    } else if (procedure == kExecute) {
        statement = prepared_[static_cast<int>(cells.at(0).integer)], from = 1;
    } else if (procedure == kUnprepare) {
        prepared_.erase(static_cast<int>(cells.at(0).integer));
    } else if (CatalogQuery(called)) {
        statement = called, from = cells.size();
    }
    if (procedure == kPrepare) {
        try {
            const auto columns = database_->Describe(statement);
            if (!columns.empty()) WriteDescription(columns);
        } catch (const SqlFailure& failure) {
            WriteFailure(failure);
        }
    } else if (!statement.empty()) {
        NamedCells parameters;
        for (std::size_t k = from; k < cells.size(); ++k)
            parameters.emplace_back("@P" + std::to_string(k - from + 1), cells[k]);
        Execute(statement, parameters, kDoneInProcedure, true);
    }
    out_.U8(0x79), out_.U32(0);
    if (handle != 0) WriteHandle(handle);
    WriteDone(kDoneProcedure, more ? kMore : 0, 0);
    SendMore();
}

void TdsSession::AnswerTransaction(Reader in) {
    const unsigned request = in.U16();
    const std::string descriptor("\1\0\0\0\0\0\0\0", 8);
    Writer change;
    try {
        if (request == 5) {
            database_->Begin();
            change.U8(8), change.U8(8), change.Raw(descriptor), change.U8(0);
            inTransaction_ = true;
        } else if (inTransaction_) {
            request == 7 ? database_->Commit() : database_->Rollback();
            change.U8(request == 7 ? 9 : 10), change.U8(0), change.U8(8), change.Raw(descriptor);
            inTransaction_ = false;
        }
        if (change.Size() > 0) out_.U8(0xE3), out_.U16(static_cast<unsigned>(change.Size())), out_.Raw(change.Bytes());
        WriteDone(kDone, 0, 0);
    } catch (const SqlFailure& failure) {
        WriteFailure(failure);
        WriteDone(kDone, kError, 0);
    }
}

void TdsSession::WriteDescription(const std::vector<SqlColumn>& columns) {
    out_.U8(0x81);
    out_.U16(static_cast<unsigned>(columns.size()));
    for (const SqlColumn& column : columns) {
        out_.U32(0);
        out_.U16(column.nullable ? 0x09 : 0x08);
        WriteTypeInfo(out_, column.type);
        if (HasTextPointer(column.type)) out_.U8(1), out_.Text("t", 2);
        out_.Text(column.name, 1);
    }
}

void TdsSession::WriteFailure(const SqlFailure& failure) {
    Writer body;
    body.U32(static_cast<std::uint32_t>(failure.number));
    body.U8(1);
    body.U8(16);
    body.Text(failure.text, 2);
    body.Text("double", 1);
    body.Text("", 1);
    body.U32(1);
    out_.U8(0xAA), out_.U16(static_cast<unsigned>(body.Size())), out_.Raw(body.Bytes());
}

void TdsSession::WriteDone(unsigned token, unsigned status, std::uint64_t rows) {
    out_.U8(token);
    out_.U16(status);
    out_.U16(0xC1);
    out_.U64(rows);
}

void TdsSession::WriteEnvironment(unsigned type, const std::string& now, const std::string& before) {
    Writer body;
    body.U8(type);
    body.Text(now, 1);
    body.Text(before, 1);
    out_.U8(0xE3), out_.U16(static_cast<unsigned>(body.Size())), out_.Raw(body.Bytes());
}

void TdsSession::WriteHandle(int handle) {
    out_.U8(0xAC);
    out_.U16(0);
    out_.U8(0);
    out_.U8(1);
    out_.U32(0);
    out_.U16(0);
    out_.U8(0x26), out_.U8(4), out_.U8(4);
    out_.U32(static_cast<std::uint32_t>(handle));
}

}  // namespace varnel::tds
