// One log-in at the double: messages in, token streams out, as TDS 7.4 has them.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "tests/support/tds/TdsDatabase.h"

namespace varnel::tds {

/// What the double expects and counts; shared by all sessions.
struct TdsOptions {
    std::string user = "sa", password;
    std::string file;                     ///< of the tables
    std::atomic<int> rowsUntilCrash = 0;  ///< read or written; 0: no crash is planned
    std::atomic<bool> staysDown = false;  ///< after the crash
    std::atomic<bool> down = false;
};

/// The planned crash.
struct Crash : std::runtime_error {
    Crash() : std::runtime_error("the double crashes, as planned") {}
};

class TdsSession {
public:
    TdsSession(int socket, TdsOptions& options) : socket_(socket), options_(options) {}
    /// Serves until the other side closes. Throws on a broken message, and Crash.
    void Serve();

private:
    struct Message {
        unsigned type = 0;
        std::string body;
    };
    bool Receive(Message& message);
    void Send(bool last);
    void SendMore() {
        if (out_.Size() > 30000) Send(false);
    }

    /// Throws Crash at the row for which it is planned.
    void CountRow();
    bool LogIn(const Message& message);
    void Answer(const Message& message);
    void AnswerBatch(Reader in);
    void AnswerCalls(Reader in);
    void AnswerCall(Reader& in);
    void AnswerTransaction(Reader in);

    void Execute(const std::string& statement, const NamedCells& parameters, unsigned doneToken, bool more);
    void WriteDescription(const std::vector<SqlColumn>& columns);
    void WriteFailure(const SqlFailure& failure);
    void WriteDone(unsigned token, unsigned status, std::uint64_t rows);
    void WriteEnvironment(unsigned type, const std::string& now, const std::string& before);
    void WriteHandle(int handle);

    int socket_;
    TdsOptions& options_;
    std::unique_ptr<TdsDatabase> database_;
    Writer out_;
    unsigned packet_ = 0;
    std::map<int, std::string> prepared_;
    int nextHandle_ = 1;
    bool inTransaction_ = false;
};

}  // namespace varnel::tds
