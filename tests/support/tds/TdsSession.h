// One log-in at the double: messages in, token streams out, as TDS 7.4 has them.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "tests/support/tds/TdsDatabase.h"

namespace varnel::tds {

/// What the double expects and counts; shared by all sessions.
struct TdsOptions {
    std::string user = "sa", password;
    std::string file;  ///< of the tables
};

class TdsSession {
public:
    TdsSession(int socket, const TdsOptions& options) : socket_(socket), options_(options) {}
    /// Serves until the other side closes or a message is broken.
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
    const TdsOptions& options_;
    std::unique_ptr<TdsDatabase> database_;
    Writer out_;
    unsigned packet_ = 0;
    std::map<int, std::string> prepared_;
    int nextHandle_ = 1;
    bool inTransaction_ = false;
};

}  // namespace varnel::tds
